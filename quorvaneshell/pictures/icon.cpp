#include "icon.h"

namespace quorvane {

QIcon icon(const QString &source, const QString &, const QColor &)
{
    return QIcon::fromTheme(source);
}

} // namespace quorvane
