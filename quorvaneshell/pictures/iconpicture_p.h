#pragma once

#include "iconsource_p.h"
#include "icontheme_p.h"

#include <QImage>

namespace quorvane {

struct IconPicture
{
    QImage image;
    bool isMissing = false; // The image stands for it then.
};

// The picture of an icon, as large as fits into a room in pixels, in its own proportions. Without a
// room files and pixels have their own size, and icons of themes 64 pixels. What is missing,
// unreadable or too large has a stand-in.
//
// Takes as long as finding and readPictureFile() take; from any thread.
IconPicture iconPicture(const IconSource &source, const QSize &room, const IconThemes &themes);

// The tile or the emptiness that stands for a missing icon. Looks into no file.
QImage iconStandIn(const IconSource &source, const QSize &room);

} // namespace quorvane
