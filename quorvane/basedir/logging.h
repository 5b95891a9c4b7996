#pragma once

#include <quorvane/quorvane_export.h>

#include <QLoggingCategory>

/*! \file
    \ingroup basedir
    The logging categories of the library. All levels of both are enabled until Qt's logging rules
    say otherwise. The desktop entry classes and the notification classes log to Qt's "default"
    category. */

/*! The category "xdg.auto_start", which xdg::AutoStart writes to. */
QUORVANE_EXPORT const QLoggingCategory &AUTO_START();

/*! The category "xdg.system_tray", which the status notifier classes write to.

    Its debug level has to be on in a process that creates an xdg::StatusNotifierItem: the item
    claims its bus name together with a debug line. */
QUORVANE_EXPORT const QLoggingCategory &SYSTEM_TRAY();
