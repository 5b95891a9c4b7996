#pragma once

#include <QStringList>

namespace quorvane {

// Which themes are looked through. Changes of the theme in a running process need another one only.
struct IconThemes
{
    // What the application or the platform's integration has chosen, as QIcon has it, and the
    // folders of the Icon Theme Specification. For the GUI thread only; looks into no file.
    static IconThemes ofApplication();

    bool operator==(const IconThemes &other) const
    {
        return name == other.name && fallback == other.fallback && folders == other.folders
               && loose == other.loose;
    }

    QString name; // Empty or "hicolor" where nobody chose.
    QString fallback;
    QStringList folders; // With themes in them,
    QStringList loose;   // and with icons.
};

// The file of an icon after the Icon Theme Specification, of the best size in pixels; empty for a
// name that no theme has. An ending ".png", ".svg" or ".xpm", which some desktop entries write, is
// left out, what a theme has in its symbolic form only is found in that, and then names that are
// shorter by what stands behind a dash.
//
// Where nobody chose a theme, which is the case outside of the large desktops, it is that of the
// setting org.gnome.desktop.interface if it is installed, or else one that is.
//
// From any thread, and one at a time. Lists of what folders hold are kept, and looked at again once
// a second at most.
QString iconFile(const QString &name, int extent, const IconThemes &themes);

// The same in a folder that a tray item brings, either flat or like a theme but without the index
// of one. Looks at a hundred sizes and 900 folders in them at most.
QString iconFileInFolder(const QString &folder, const QString &name, int extent);

// That path, or with an ending of icons, if it is a regular file.
QString iconFileAt(const QString &path);

} // namespace quorvane
