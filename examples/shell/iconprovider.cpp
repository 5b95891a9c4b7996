#include "iconprovider.h"

#include <QIcon>
#include <QPainter>
#include <QUrl>

#include <iterator>

namespace {

// Each dark enough for a white letter.
constexpr QRgb tileColors[] = { 0xff3b6fd4, 0xff0f7c8f, 0xff2e7d4f, 0xff8a5a12, 0xffb4472f,
                                0xffb03a73, 0xff7a4fc2, 0xff4a5fa8, 0xff56701c, 0xff8d4b94 };

QString decoded(const QString &text)
{
    return QUrl::fromPercentEncoding(text.toUtf8());
}

QIcon iconOf(const QString &name)
{
    const QString file
            = name.startsWith(QLatin1String("file://")) ? QUrl(name).toLocalFile() : name;
    return file.startsWith(QLatin1Char('/')) ? QIcon(file) : QIcon::fromTheme(file);
}

QPixmap tile(const QString &label, const QSize &size)
{
    const QByteArray bytes = label.toUtf8();
    const QColor color(tileColors[qChecksum(bytes.constData(), static_cast<uint>(bytes.size()))
                                  % std::size(tileColors)]);
    QLinearGradient shade(0, 0, 0, size.height());
    shade.setColorAt(0, color.lighter(112));
    shade.setColorAt(1, color);

    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    const qreal radius = size.width() * 0.24;
    painter.drawRoundedRect(QRect(QPoint(), size), radius, radius);

    QFont font;
    font.setPixelSize(qMax(1, size.height() / 2));
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(QPoint(), size), Qt::AlignCenter, label.trimmed().mid(0, 1).toUpper());
    return pixmap;
}

} // namespace

IconProvider::IconProvider()
    : QQuickImageProvider(QQuickImageProvider::Pixmap)
{
}

QPixmap IconProvider::requestPixmap(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QSize wanted = requestedSize.isValid() ? requestedSize : QSize(64, 64);
    const QString label = decoded(id.section(QLatin1Char('/'), 0, 0));
    QPixmap pixmap = iconOf(decoded(id.section(QLatin1Char('/'), 1))).pixmap(wanted);
    if (pixmap.isNull())
        pixmap = tile(label, wanted);
    *size = pixmap.size();
    return pixmap;
}
