#include "iconsource.h"

#include <QUrl>

QString iconSource(const QString &icon, const QString &themePath)
{
    if (icon.isEmpty())
        return {};
    // Twice, as Qt decodes what it can of a URL, even a slash, but never a percent sign.
    const auto encoded = [](const QString &text) {
        const QByteArray once = QUrl::toPercentEncoding(text);
        return QString::fromLatin1(QUrl::toPercentEncoding(QString::fromLatin1(once)));
    };
    const QString source = QStringLiteral("image://quorvane/icon/") + encoded(icon);
    return themePath.isEmpty() ? source : source + QLatin1Char('/') + encoded(themePath);
}
