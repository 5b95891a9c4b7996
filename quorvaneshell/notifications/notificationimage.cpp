#include "notificationimage_p.h"

#include <quorvaneshell/pictures/scaledimage_p.h>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int longestSide = 320;
constexpr qint64 mostBytes = 40LL * 1024 * 1024;

} // namespace

QImage notificationImage(const QDBusArgument &argument)
{
    if (argument.currentSignature() != QLatin1String("(iiibiiay)"))
        return {};

    int width = 0;
    int height = 0;
    int rowstride = 0;
    bool alpha = false;
    int bits = 0;
    int channels = 0;
    QByteArray pixels;
    argument.beginStructure();
    argument >> width >> height >> rowstride >> alpha >> bits >> channels >> pixels;
    argument.endStructure();

    if (width <= 0 || height <= 0 || bits != 8 || channels != (alpha ? 4 : 3))
        return {};
    const qint64 row = qint64(width) * channels;
    // The last row may end with its last pixel.
    if (rowstride < row || qint64(rowstride) * (height - 1) + row > pixels.size())
        return {};
    if (pixels.size() > mostBytes || 4 * qint64(width) * height > mostBytes)
        return {};

    QImage image(width, height, alpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    for (int y = 0; y < image.height(); ++y)
        std::copy_n(pixels.constData() + qint64(rowstride) * y, row, image.scanLine(y));
    return notificationImage(image);
}

QImage notificationImage(const QImage &image)
{
    return limitedImage(image, longestSide);
}

} // namespace quorvane
