#pragma once

#include "application_p.h"

#include <QByteArrayList>
#include <QDBusPendingCall>

namespace quorvane {

// What launching an application came to. The files of one launch may take more than one process.
struct Launch
{
    QVector<qint64> pids;
    QString error; // Empty if nothing went wrong.
};

// Starts the program of an application, or of one of its actions, as a child that is to be reaped:
// the field codes with the URIs, in its folder, in a terminal if it or the caller asks for one. It
// has the environment of this process, without what is about the shell itself, and its output, a
// session of its own, and survives this process.
Launch launch(const Application &application, const QString &action, const QByteArrayList &uris,
              bool inTerminal);

// Whether the session bus starts the application, and not its command line.
bool isActivatedByBus(const Application &application);

// The bus name of such an application.
QString busName(const Application &application);

// Calls it by the interface org.freedesktop.Application: Activate, Open or ActivateAction.
QDBusPendingCall activate(const Application &application, const QString &action,
                          const QByteArrayList &uris);

} // namespace quorvane
