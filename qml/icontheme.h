#pragma once

#include <QImage>

// The icon of that name in the icon theme: the best for that size in pixels, or a smaller one if
// there is no other; null for a name that no theme has. An ending ".png", ".svg" or ".xpm", which some
// desktop entries write, is left out, and what a theme has in its symbolic form only is shown in that.
// For the GUI thread only.
//
// The theme is the one that the application or the platform's integration has chosen. Where neither
// did, which is the case outside of the large desktops, the first call chooses for the application:
// the theme of GSettings (org.gnome.desktop.interface) if it is installed, or else one that is.
QImage themeIcon(const QString &name, const QSize &size);
