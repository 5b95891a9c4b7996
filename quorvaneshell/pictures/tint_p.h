#pragma once

#include <QColor>
#include <QImage>

namespace quorvane {

// Whether all that is to be seen of an icon has one grey, as those have that are made for panels of
// one colour scheme.
bool isOfOneGrey(const QImage &icon);

// The shape of an icon in a colour.
QImage tinted(const QImage &icon, const QColor &color);

} // namespace quorvane
