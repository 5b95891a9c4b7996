#include "iconsource.h"

#include <QUrl>

QString iconSource(const QString &icon, const QString &themePath)
{
    if (icon.isEmpty())
        return {};
    // Qt decodes what it can of a URL, but never a percent sign.
    const auto encoded = [](const QString &text) {
        return QString::fromLatin1(QUrl::toPercentEncoding(text));
    };
    const QString source = QStringLiteral("image://quorvane/icon/") + encoded(icon);
    return themePath.isEmpty() ? source : source + QLatin1Char('/') + encoded(themePath);
}
