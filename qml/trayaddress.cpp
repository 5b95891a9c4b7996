#include "trayaddress.h"

#include <QRegularExpression>

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

bool TrayAddress::isBusName(const QString &text)
{
    constexpr int maximalLength = 255;
    static const QRegularExpression form(
            QStringLiteral("^(:[\\w-]+(\\.[\\w-]+)+|[A-Za-z_-][\\w-]*(\\.[A-Za-z_-][\\w-]*)+)\\z"));
    return text.size() <= maximalLength && form.match(text).hasMatch();
}

bool TrayAddress::isObjectPath(const QString &text)
{
    constexpr int maximalLength = 1000;
    static const QRegularExpression form(QStringLiteral("^(/|(/\\w+)+)\\z"));
    return text.size() <= maximalLength && form.match(text).hasMatch();
}
