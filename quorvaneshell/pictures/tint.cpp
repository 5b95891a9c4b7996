#include "tint_p.h"

#include <QPainter>

#include <algorithm>

namespace quorvane {

bool isOfOneGrey(const QImage &icon)
{
    constexpr int largestIcon = 1024;
    if (qMax(icon.width(), icon.height()) > largestIcon)
        return false;
    const QImage image = icon.convertToFormat(QImage::Format_ARGB32);
    int darkest = 255;
    int lightest = 0;
    bool hasShape = false;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) < 128) {
                hasShape = true;
                continue;
            }
            const auto [least, most]
                    = std::minmax({ qRed(line[x]), qGreen(line[x]), qBlue(line[x]) });
            darkest = qMin(darkest, least);
            lightest = qMax(lightest, most);
        }
    }
    return hasShape && lightest - darkest < 40;
}

QImage tinted(const QImage &icon, const QColor &color)
{
    QImage image = icon.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace quorvane
