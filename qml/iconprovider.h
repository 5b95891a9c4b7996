#pragma once

#include <QQuickAsyncImageProvider>

// The pictures of image://quorvane for Image, at the size in pixels that its sourceSize makes on
// its screen, in their own proportions:
//
// - icon/ICON: a name in the theme, an absolute path, or a file URL (no other scheme). Paths may
//   come
//   without an ending, names with one: ".png", ".svg" or ".xpm".
// - themed/NAME/FOLDER/NUMBER/STAMP: the same, as iconSource() makes it: a name is looked for in
//   the folder
//   first, which is flat or has the folders of the theme hicolor, and where there is none, the picture
//   of ImageStore with that number is taken.
// - pixels/NUMBER: a picture of ImageStore.
//
// All are read in threads of their own, whatever the Image says, and by readPictureFile(), within
// its limits. What is missing, unreadable or too large becomes a tile, without a warning. Behind it
// may stand three parts, each with a question mark or, behind another one, with an ampersand:
//
// - color=COLOR: the colour in which icons of one grey are shown, which are made for one colour
//   scheme: symbolic ones, and many of the tray. Other pictures stay as they are.
// - label=TEXT: the tile for a missing picture has the first letter of this, and a colour that
//   depends on it; without a label it is grey and blank.
// - missing=empty: nothing is seen of a missing picture.
//
// Without a sourceSize files and pixels have their own size, and the icons of themes 64 pixels.
class IconProvider : public QQuickAsyncImageProvider
{
public:
    QQuickImageResponse *requestImageResponse(const QString &id,
                                              const QSize &requestedSize) override;
};
