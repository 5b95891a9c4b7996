#include "iconengine_p.h"

#include <QPainter>

namespace quorvane {

namespace {

// Only Qt's own engine knows what the style makes of an icon.
QPixmap styled(const QPixmap &picture, QIcon::Mode mode)
{
    if (mode == QIcon::Normal)
        return picture;
    QPixmap pixmap = QIcon(picture).pixmap(picture.size(), mode);
    pixmap.setDevicePixelRatio(1);
    return pixmap;
}

} // namespace

IconEngine::IconEngine(const IconRequest &request)
    : _request(request)
{
}

QIconEngine *IconEngine::clone() const
{
    return new IconEngine(_request);
}

QSize IconEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    return size;
}

QPixmap IconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State)
{
    return size.isEmpty() ? QPixmap() : styled(IconCache::instance().picture(_request, size), mode);
}

void IconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state)
{
    const qreal ratio = painter->device()->devicePixelRatioF();
    const QSize room = (QSizeF(rect.size()) * ratio).toSize();
    QPixmap picture = pixmap(room, mode, state);
    if (picture.isNull())
        return;
    picture.setDevicePixelRatio(ratio);
    // By whole pixels, or Qt would draw it between them.
    const QPoint offset((room.width() - picture.width()) / 2,
                        (room.height() - picture.height()) / 2);
    painter->drawPixmap(rect.topLeft() + QPointF(offset) / ratio, picture);
}

} // namespace quorvane
