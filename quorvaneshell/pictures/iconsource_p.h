#pragma once

#include <QString>

namespace quorvane {

// The URL by which an Image shows an icon: a name in a theme, an absolute path or a file URL. Empty
// for an empty icon without pixels.
//
// With themePath, a folder in which names are looked for first; with pixels, the URL of a picture
// in ImageStore, that picture is shown where no icon is found. A stamp is any text that makes the
// URL another one, so that Qt does not take the picture from its cache when the file has changed.
QString iconSource(const QString &icon, const QString &themePath = {}, const QString &pixels = {},
                   const QString &stamp = {});

} // namespace quorvane
