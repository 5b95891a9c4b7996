#pragma once

#include "desktopfile_p.h"

#include <QStringList>

#include <vector>

namespace quorvane {

struct InstalledApplications;

// Which applications open files and URLs of a MIME type, by the lists of the MIME Applications
// Associations Specification (mimeapps.list, mimeinfo.cache) as they are when this is made, and by
// MimeType in the entries, for those that no cache has.
//
// These are read here and not by GIO, which reads the entries as well and would wait for the writer
// of a pipe among them for ever, walks through all folders along any link, and starts a thread.
class MimeHandlers
{
public:
    explicit MimeHandlers(const InstalledApplications &applications);

    // The ids of those that are installed, the default one first: for the type itself, then for those
    // that it is a kind of, such as text/plain for text/html.
    QStringList handlers(const QString &mimeType) const;

    // Makes an application the default one in the user's configuration. Returns whether it was
    // written.
    static bool setDefault(const QString &mimeType, const QString &appId);

private:
    struct List
    {
        DesktopFile file;
        DesktopFile cache;    // What the entries beside it open.
        QString folder;       // Of these; empty if there are none that this list comes before.
        bool hasOnlyDefaults; // As those for one desktop.
    };

    class Search;

    void _readLists(const QString &folder, bool hasEntries);

    const InstalledApplications &_applications;
    std::vector<List> _lists; // The most important first.
};

} // namespace quorvane
