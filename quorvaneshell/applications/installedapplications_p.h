#pragma once

#include "application_p.h"
#include "applicationfolders_p.h"

#include <quorvaneshell/pictures/regularfile_p.h>

#include <QHash>
#include <QStringList>
#include <QVector>

#include <atomic>

namespace quorvane {

// What there is, and what it was read from.
struct InstalledApplications
{
    struct Read
    {
        FileStamp stamp; // Null if the file had changed so shortly before that it may do so unseen.
        ApplicationPointer application;
    };

    QVector<ApplicationPointer> sorted; // By name, as the user's language has it.
    QHash<QString, ApplicationPointer> byId;
    QHash<QString, Read> byPath;
    QVector<ApplicationFolder> folders;
    // The main categories that occur, in the order of their names: of all, and of what is shown.
    QStringList allCategories;
    QStringList shownCategories;
};

// All applications. Those that are what they were before are the same objects, and only files that
// have changed are read. May be called in any thread; ends early, with anything, once it is
// cancelled.
InstalledApplications readApplications(const InstalledApplications &before,
                                       const std::atomic<bool> &cancelled);

} // namespace quorvane
