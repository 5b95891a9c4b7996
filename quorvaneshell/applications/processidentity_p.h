#pragma once

#include <QByteArrayList>
#include <QString>
#include <QStringList>

namespace quorvane {

// What the kernel tells of a process that says which application it may be.
struct ProcessIdentity
{
    // False for a process that has ended, of another user, or that lets nobody look into it: what is
    // below is empty then, and says nothing.
    bool isKnown = false;
    QString flatpak; // The application that it is a sandbox of.
    QString snap;    // The same for snaps.
    // By systemd's unit, which bears its id; most likely first, as dashes are not always escaped.
    QStringList unitIds;
    bool beginsUnit = false; // No other process of the unit has started it.
    QString executable;
    QByteArrayList commandLine;
};

// Reads /proc: at most 64 KB of each file (and 256 KB of the list of mounts), and nothing that
// somebody else could have put in the place of a file, or could be waited for.
ProcessIdentity processIdentity(qint64 pid);

// The id of the application in the contents of a .flatpak-info.
QString flatpakApplication(const QByteArray &info);

// What the control group of a process says, by the contents of its cgroup file.
void setControlGroup(ProcessIdentity *process, const QByteArray &cgroup);

} // namespace quorvane
