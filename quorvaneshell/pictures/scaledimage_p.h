#pragma once

#include <QImage>

namespace quorvane {

// The size of a picture that is made as large as fits into a room in its own proportions. A room of
// one side only has 0 for the other; without one the picture has its own size, or the largest.
QSize fittedSize(const QSize &own, const QSize &room);

// The image in that size. Smooth, after a rough step that keeps large images cheap.
QImage scaledImage(QImage image, const QSize &size);

// The image with no side longer than that.
QImage limitedImage(const QImage &image, int longestSide);

} // namespace quorvane
