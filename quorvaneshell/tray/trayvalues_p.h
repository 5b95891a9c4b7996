#pragma once

#include "tray.h"

#include <QImage>
#include <QString>

class QDBusMessage;

namespace quorvane {

// An icon of a tray item, in the ways in which it told of it.
struct TrayIcon
{
    bool isEmpty() const { return name.isEmpty() && image.isNull(); }

    QString name;      // In a theme, or an absolute path.
    QString themePath; // A folder to look for the name in first.
    QImage image;
};

// What a tray item tells of itself.
struct TrayValues
{
    QString id;
    QString title;
    Tray::Status status = Tray::Active;
    QString category;
    QString label;
    QString toolTip;  // Plain text.
    QString menuPath; // Empty without a menu.
    bool isMenu = false;
    TrayIcon icon; // That of its status.
    TrayIcon overlay;
};

// Reads an answer to GetAll. A program may answer with anything: what is of a wrong type is left
// out, and texts are cut to 1,000 characters.
TrayValues readTrayValues(const QDBusMessage &answer);

} // namespace quorvane
