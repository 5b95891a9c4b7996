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
    QPixmap picture = pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state);
    if (picture.isNull())
        return;
    picture.setDevicePixelRatio(ratio);
    const QSizeF size = QSizeF(picture.size()) / ratio;
    const QPointF corner(rect.x() + (rect.width() - size.width()) / 2,
                         rect.y() + (rect.height() - size.height()) / 2);
    painter->drawPixmap(corner, picture);
}

} // namespace quorvane
