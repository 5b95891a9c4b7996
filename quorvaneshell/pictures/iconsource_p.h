#pragma once

#include <QColor>
#include <QString>

namespace quorvane {

// The URL by which an Image shows an icon: a name in a theme, an absolute path or a file URL. Empty
// for an empty icon without pixels.
//
// With themePath, a folder in which names are looked for first; with pixels, the URL of a picture
// in ImageStore, that picture is shown where no icon is found. A stamp is any text that makes the
// URL another one, so that what was kept of the picture is not shown when the file has changed.
QString iconSource(const QString &icon, const QString &themePath = {}, const QString &pixels = {},
                   const QString &stamp = {});

// The URL of a picture in ImageStore, and its number from that, or from the number alone; 0 for none.
QString pixelsSource(quint64 number);
quint64 pixelsNumber(const QString &source);

// What such URLs say, behind image://quorvane/:
//
// - icon/ICON: a name, a path, or a file URL (no other scheme). Paths may come without an ending,
//   names with one: ".png", ".svg" or ".xpm".
// - themed/ICON/FOLDER/NUMBER/STAMP: with a folder and the number of a picture in ImageStore; "-" for
//   none.
// - pixels/NUMBER: a picture of ImageStore.
//
// Behind it may stand parts, each with a question mark or, behind another one, with an ampersand:
//
// - color=COLOR: the colour in which icons of one grey are shown, which are made for one colour
//   scheme: symbolic ones, and many of the tray. Other pictures stay as they are.
// - label=TEXT: what the tile for a missing picture shows the first letter of.
// - missing=empty: nothing is seen of a missing picture.
struct IconSource
{
    // Of a URL in any state of encoding, or an icon as it is.
    static IconSource of(const QString &source);

    bool isPath() const { return icon.startsWith(QLatin1Char('/')); }

    QString icon; // A name or a path,
    QString folder;
    QString pixels; // and what is taken where there is no such icon.
    QColor color;
    QString label;
    bool isEmptyIfMissing = false;
};

} // namespace quorvane
