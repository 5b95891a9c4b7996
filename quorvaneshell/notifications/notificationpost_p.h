#pragma once

#include "notificationhints_p.h"

#include <QStringList>

namespace quorvane {

// A call of Notify, and the id that it is answered with.
struct NotificationPost
{
    // Cuts what is longer than any shell shows, so that nobody fills the memory.
    void shorten();
    // What a program calls the one notification that it shows anew each time; mostly empty.
    QString stackTag() const;

    QString appName;
    uint replacesId = 0;
    QString appIcon;
    QString summary;
    QString body;
    QStringList actions; // Keys and texts alternating.
    NotificationHints hints;
    int timeout = -1;
    uint id = 0;
    QString sender; // Unique name on the bus; empty for a post of this process.
};

} // namespace quorvane
