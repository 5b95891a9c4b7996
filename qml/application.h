#pragma once

#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVector>

// An installed application as GIO reads it: texts in the user's language, flags for this desktop.
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
    bool shown = true; // Without NoDisplay and the like.
    bool busActivatable = false;

    // What a search compares: the folded name, and all that has words, a line each.
    QString foldedName;
    QString foldedWords;
};

using ApplicationPointer = QSharedPointer<const Application>;

// The application of a desktop entry; null for what is none, is hidden or lacks its program. It
// waits for no writer and reads no more than an entry can sensibly have.
ApplicationPointer readApplication(const QString &path, const QString &appId);

// All applications, sorted by name as the user's language has it. May be called in any thread.
QVector<ApplicationPointer> readApplications();
