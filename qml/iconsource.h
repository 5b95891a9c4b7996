#pragma once

#include <QString>

// The URL by which an Image shows an icon: a name in a theme, an absolute path or a file URL. With
// themePath, a folder in which names are looked for first. Empty for an empty icon.
QString iconSource(const QString &icon, const QString &themePath = {});
