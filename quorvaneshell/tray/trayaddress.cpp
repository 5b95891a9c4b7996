#include "trayaddress_p.h"

namespace quorvane {

TrayAddress TrayAddress::fromText(const QString &text, const QString &caller)
{
    const int slash = text.indexOf(QLatin1Char('/'));
    if (slash < 0)
        return { text, QStringLiteral("/StatusNotifierItem") };
    if (slash == 0)
        return { caller, text };
    // Some registries separate the two.
    const bool separated = text.at(slash - 1) == QLatin1Char('@');
    return { text.left(separated ? slash - 1 : slash), text.mid(slash) };
}

} // namespace quorvane
