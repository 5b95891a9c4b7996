#pragma once

#include <QImage>

namespace quorvane {

// Pictures of strangers: PNG, JPEG, WebP, XPM and SVG, told by their content. Null for all else,
// for what is damaged, and for what would cost too much: none takes more than about a second or 64
// MB. Texts, profiles and further frames are left out before Qt sees the data, and an SVG reads
// nothing but itself (svgfilter.h). May be used from any thread; meant for one that nobody waits
// for.
//
// With a room the picture is made as large as fits into it in its own proportions, else it has its
// own size, and an SVG of many shapes less if it is large. A room of one side only has 0 for the
// other. own gets the picture's own size.
QImage readPicture(const QByteArray &data, const QSize &room = {}, QSize *own = nullptr);

// The same for a file, which is opened without waiting, and read if it is a regular one of up to 20
// MB.
QImage readPictureFile(const QString &path, const QSize &room = {}, QSize *own = nullptr);

} // namespace quorvane
