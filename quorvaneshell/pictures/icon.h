#pragma once

#include <quorvaneshell/quorvaneshell_export.h>

#include <QColor>
#include <QIcon>
#include <QString>

namespace quorvane {

/*! \ingroup shell
    The icon of a role iconSource. */
QUORVANE_SHELL_EXPORT QIcon icon(const QString &source, const QString &label = {},
                                 const QColor &color = {});

} // namespace quorvane
