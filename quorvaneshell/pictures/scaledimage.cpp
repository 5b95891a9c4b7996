#include "scaledimage_p.h"

namespace quorvane {

namespace {

constexpr int largestSide = 4096;
constexpr qint64 mostSmoothPixels = 4LL << 20;

} // namespace

QSize fittedSize(const QSize &own, const QSize &room)
{
    const auto side = [](int asked) { return asked > 0 ? qMin(asked, largestSide) : largestSide; };
    const QSize box(side(room.width()), side(room.height()));
    const bool isAsked = room.width() > 0 || room.height() > 0;
    const bool fits = own.width() <= box.width() && own.height() <= box.height();
    const QSize size = fits && !isAsked ? own : own.scaled(box, Qt::KeepAspectRatio);
    return size.expandedTo({ 1, 1 });
}

QImage scaledImage(QImage image, const QSize &size)
{
    if (image.isNull() || image.size() == size)
        return image;
    if (image.width() > 2 * size.width() && image.height() > 2 * size.height())
        image = image.scaled(2 * size);
    const bool isLarge = qint64(image.width()) * image.height() > mostSmoothPixels;
    return image.scaled(size, Qt::IgnoreAspectRatio,
                        isLarge ? Qt::FastTransformation : Qt::SmoothTransformation);
}

QImage limitedImage(const QImage &image, int longestSide)
{
    const bool fits = qMax(image.width(), image.height()) <= longestSide;
    return fits ? image
                : scaledImage(image, fittedSize(image.size(), { longestSide, longestSide }));
}

} // namespace quorvane
