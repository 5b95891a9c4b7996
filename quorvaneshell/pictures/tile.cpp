#include "tile_p.h"

#include <QPainter>
#include <QTextBoundaryFinder>

#include <array>

namespace quorvane {

namespace {

// Each dark enough for a white letter.
constexpr std::array<QRgb, 10> tileColors { 0xff3b6fd4, 0xff0f7c8f, 0xff2e7d4f, 0xff8a5a12,
                                            0xffb4472f, 0xffb03a73, 0xff7a4fc2, 0xff4a5fa8,
                                            0xff56701c, 0xff8d4b94 };

QColor tileColor(const QString &label)
{
    if (label.isEmpty())
        return { 128, 128, 128, 96 };
    quint32 sum = 2166136261; // FNV-1
    const QByteArray bytes = label.toUtf8();
    for (const char byte : bytes)
        sum = sum * 16777619 ^ uchar(byte);
    return tileColors[sum % tileColors.size()];
}

QString firstLetter(const QString &label)
{
    constexpr int longest = 16; // With all that is set above and below it.
    const QString start = label.trimmed().left(longest);
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, start);
    return start.left(int(qMax(0, int(letters.toNextBoundary())))).toUpper();
}

} // namespace

QImage tile(const QString &label, int side)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);

    const QColor color = tileColor(label);
    QLinearGradient shade(0, 0, 0, side);
    shade.setColorAt(0, color.lighter(112));
    shade.setColorAt(1, color);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawRoundedRect(image.rect(), side * 0.24, side * 0.24);

    const QString letter = firstLetter(label);
    if (letter.isEmpty())
        return image;
    QFont font;
    font.setPixelSize(qMax(1, side / 2));
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(image.rect(), Qt::AlignCenter, letter);
    return image;
}

} // namespace quorvane
