#include "trayimage_p.h"

#include <QDBusArgument>
#include <QtEndian>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int largestUsefulSide = 256;
constexpr int largestSide = 1024;

struct Pixels
{
    bool fit() const
    {
        return width > 0 && width <= largestSide && height > 0 && height <= largestSide
               && bytes.size() == width * height * int(sizeof(quint32));
    }
    bool areBetterThan(const Pixels &other) const
    {
        const int side = std::max(width, height);
        const int otherSide = std::max(other.width, other.height);
        if (otherSide > largestUsefulSide)
            return side < otherSide;
        return side > otherSide && (side <= largestUsefulSide || otherSide == 0);
    }

    int width = 0;
    int height = 0;
    QByteArray bytes;
};

Pixels readPixels(const QDBusArgument &argument)
{
    Pixels pixels;
    argument.beginStructure();
    argument >> pixels.width >> pixels.height >> pixels.bytes;
    argument.endStructure();
    return pixels;
}

} // namespace

QImage trayImage(const QVariant &pictures)
{
    const auto argument = pictures.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a(iiay)"))
        return {};
    constexpr int maximalNumber = 64;
    Pixels best;
    argument.beginArray();
    for (int i = 0; i < maximalNumber && !argument.atEnd(); ++i) {
        const Pixels pixels = readPixels(argument);
        if (pixels.fit() && pixels.areBetterThan(best))
            best = pixels;
    }
    argument.endArray(); // Else the message stays in memory.
    if (best.bytes.isEmpty())
        return {};
    QImage image(best.width, best.height, QImage::Format_ARGB32);
    qFromBigEndian<quint32>(best.bytes.constData(), image.sizeInBytes() / sizeof(quint32),
                            image.bits());
    return image;
}

} // namespace quorvane
