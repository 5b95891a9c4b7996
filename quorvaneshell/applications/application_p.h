#pragma once

#include <QHash>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace quorvane {

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
    QByteArray mimeTypes; // That it opens, with a semicolon before and after each.
    QVariantList actions; // Maps with "id", "text" and "iconSource".
    QString startupWmClass;
    QByteArray exec;
    bool terminal = false;
    bool shown = true;           // Without NoDisplay and the like.
    bool busActivatable = false; // By a name that is one.
    bool hasProgram = false;     // A command line of its own.
    bool isAppImage = false;     // By what those who install these write into their entries.

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

} // namespace quorvane
