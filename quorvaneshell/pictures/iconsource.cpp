#include "iconsource_p.h"

#include <QUrl>

namespace quorvane {

namespace {

QString encoded(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

} // namespace

QString iconSource(const QString &icon, const QString &themePath, const QString &pixels,
                   const QString &stamp)
{
    if (icon.isEmpty())
        return pixels;
    if (themePath.isEmpty() && pixels.isEmpty() && stamp.isEmpty())
        return QStringLiteral("image://quorvane/icon/") + encoded(icon);
    // Twice, as Qt decodes what it can of a URL, even a slash, but never a percent sign.
    QStringList parts { icon, themePath, pixels.section(QLatin1Char('/'), -1), stamp };
    for (QString &part : parts)
        part = part.isEmpty() ? QStringLiteral("-") : encoded(encoded(part));
    return QStringLiteral("image://quorvane/themed/") + parts.join(QLatin1Char('/'));
}

} // namespace quorvane
