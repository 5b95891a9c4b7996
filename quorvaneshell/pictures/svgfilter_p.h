#pragma once

#include <QByteArray>
#include <QImage>
#include <QSizeF>

#include <functional>

namespace quorvane {

struct SvgPicture
{
    QByteArray text;   // Empty if it was refused.
    QSizeF size;       // Its own, in pixels.
    double weight = 1; // Nanoseconds that a pixel of it costs, at most and about.
};

// An SVG written anew with nothing but what draws: shapes, groups, gradients, references within it,
// short texts, and pictures that are part of it and that readImage gives an image for. Style sheets
// become attributes; scripts, animations, filters, clips, patterns, entities and whatever lies
// outside are left out. Refused are more than 1 MB, packed ones, and more than 20,000 elements,
// references followed. Takes a time in proportion to the length.
SvgPicture filteredSvg(const QByteArray &svg,
                       const std::function<QImage(const QByteArray &)> &readImage);

} // namespace quorvane
