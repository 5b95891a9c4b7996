#include "iconpicture_p.h"

#include "imagestore_p.h"
#include "picturereader_p.h"
#include "scaledimage_p.h"
#include "tile_p.h"
#include "tint_p.h"

namespace quorvane {

namespace {

// The side of a square icon. A room may have one side only.
int sideIn(const QSize &room)
{
    constexpr int defaultSide = 64;
    constexpr int largestSide = 2048;
    const int least = qMin(room.width(), room.height());
    const int asked = least > 0 ? least : qMax(room.width(), room.height());
    return asked > 0 ? qMin(asked, largestSide) : defaultSide;
}

QImage foundImage(const IconSource &source, const QSize &room, const IconThemes &themes)
{
    if (source.isPath())
        return readPictureFile(iconFileAt(source.icon), room);
    if (source.icon.isEmpty())
        return {};
    const int side = sideIn(room);
    QImage image;
    if (!source.folder.isEmpty())
        image = readPictureFile(iconFileInFolder(source.folder, source.icon, side), room);
    if (image.isNull())
        image = readPictureFile(iconFile(source.icon, side, themes), { side, side });
    return image;
}

QImage storedImage(const IconSource &source, const QSize &room)
{
    const QImage image = ImageStore::find(source.pixels);
    return scaledImage(image, fittedSize(image.size(), room));
}

} // namespace

IconPicture iconPicture(const IconSource &source, const QSize &room, const IconThemes &themes)
{
    QImage image = foundImage(source, room, themes);
    if (image.isNull())
        image = storedImage(source, room);
    if (image.isNull())
        return { iconStandIn(source, room), true };
    const bool isSymbolic = source.icon.endsWith(QLatin1String("-symbolic"));
    if (source.color.isValid() && (isSymbolic || isOfOneGrey(image)))
        image = tinted(image, source.color);
    return { image, false };
}

QImage iconStandIn(const IconSource &source, const QSize &room)
{
    const int side = sideIn(room);
    if (!source.isEmptyIfMissing)
        return tile(source.label, side);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

} // namespace quorvane
