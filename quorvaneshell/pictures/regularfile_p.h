#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane {

// What tells one state of a file from another: it changes with each change of its contents.
struct FileStamp
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 changed = 0; // Of the contents or the status, in nanoseconds since 1970.

    bool isNull() const { return inode == 0; }
    bool operator==(const FileStamp &other) const;
};

// That of a regular file, which may stand behind links; null for all else.
FileStamp fileStamp(const QString &path);

// The contents of a regular file; null for all else, and for one that is larger. Nobody waits for
// the writer of a pipe, and no device is opened. Takes paths of Qt's resources, too.
QByteArray readRegularFile(const QString &path, qint64 largest);

// The same of a larger file, too, but no more than this much of it, and not of Qt's resources.
QByteArray readBeginning(const QString &path, qint64 most);

} // namespace quorvane
