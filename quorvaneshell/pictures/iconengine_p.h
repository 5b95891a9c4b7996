#pragma once

#include "iconcache_p.h"

#include <QIconEngine>

namespace quorvane {

// What icon() gives a QIcon: a request, whose picture the cache has.
class IconEngine : public QIconEngine
{
public:
    explicit IconEngine(const IconRequest &request);

    QIconEngine *clone() const override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    // In a size in pixels, without a ratio.
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    // In the middle.
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;

private:
    const IconRequest _request;
};

} // namespace quorvane
