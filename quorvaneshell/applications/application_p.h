#pragma once

#include "applicationfolders_p.h"

#include <quorvaneshell/pictures/regularfile_p.h>

#include <QHash>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVector>

#include <atomic>

namespace quorvane {

// An entry that is larger is none.
constexpr qint64 largestEntry = 1 << 20;

// An installed application: texts in the user's language, flags for this desktop.
// It is read once and never changes, so that threads and models share it.
struct Application
{
    QString appId;
    QString path;
    QString name;
    QString genericName;
    QString comment;
    QStringList keywords;
    QStringList categories;
    QString iconSource;
    QVariantList actions; // Maps with "id" and "name".
    bool terminal = false;
    bool shown = true;           // Without NoDisplay and the like.
    bool busActivatable = false; // By a name that is one.
    bool hasProgram = false;     // A command line of its own.

    // What a search compares: folded texts, from the most telling to the least. Those of several
    // texts have a line for each.
    QString foldedName;
    QString foldedKind;  // Generic name, then keywords.
    QString foldedAbout; // Comment and full name.
    QString foldedId;
};

using ApplicationPointer = QSharedPointer<const Application>;

// By which an application is known, whatever else becomes of it.
struct ApplicationKey
{
    const Application *application = nullptr;

    bool operator==(const ApplicationKey &other) const
    {
        return application == other.application || application->appId == other.application->appId;
    }
};

inline auto qHash(const ApplicationKey &key)
{
    return qHash(key.application->appId);
}

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

// The application of a desktop entry; null for what is none, is hidden, or lacks its name or its
// program.
ApplicationPointer readApplication(const QString &path, const QString &appId);

// All applications. Those that are what they were before are the same objects, and only files that
// have changed are read. May be called in any thread; ends early, with anything, once it is
// cancelled.
InstalledApplications readApplications(const InstalledApplications &before,
                                       const std::atomic<bool> &cancelled);

} // namespace quorvane
