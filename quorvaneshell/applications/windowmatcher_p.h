#pragma once

#include "application_p.h"
#include "processidentity_p.h"
#include "startedprogram_p.h"

#include <QHash>
#include <QVector>

#include <vector>

namespace quorvane {

// Finds the application to which a window or a process belongs. It is made once for a list of
// applications, and asks nobody for anything.
class WindowMatcher
{
public:
    explicit WindowMatcher(const QVector<ApplicationPointer> &applications);

    // The id of the one that fits best; empty for none, and where two fit equally.
    //
    // A process in a sandbox belongs to an application of that sandbox, and no other process does. Among
    // those left, each of these in turn chooses from what the ones before could not tell apart, or
    // from all if they found nothing:
    // 1. the id, exactly
    // 2. the id, in another case
    // 3. StartupWMClass
    // 4. the last part of an id in reverse-domain notation, on either side
    // 5. an app of a browser, or a game of Steam, by what Exec says
    // 6. the class as name of the program that Exec starts
    // 7. the unit of systemd
    // 8. the program that Exec starts, and its arguments
    // 9. the sandbox, or the file of which a process is mounted (AppImage)
    // From 2 to 6, and from 7 to 9, those that are shown are first asked for, then all others.
    QString match(const QString &windowClass, const ProcessIdentity &process) const;

private:
    using Found = std::vector<int>; // Ascending.
    using Index = QHash<QString, Found>;

    struct Candidate
    {
        QString appId;
        StartedProgram program;
        bool isShown = true;
        bool isTerminalEmulator = false;
        bool isAppImage = false;
    };
    struct Process;

    void _add(int number, const QString &startupWmClass);

    Found _byId(const QString &windowClass) const;
    Found _byProgramName(const QString &windowClass) const;
    Found _byUnit(const Process &process) const;
    Found _byProgram(const Process &process, const Found &among) const;
    Found _bySandbox(const Process &process) const;
    bool _fits(const Candidate &candidate, const Process &process) const;

    std::vector<Candidate> _candidates;
    Index _exactIds;
    Index _ids;       // In small letters, as all below.
    Index _classes;   // StartupWMClass.
    Index _lastParts; // Of ids in reverse-domain notation.
    Index _webApps;   // "id", "id-profile", "host__path", "host__path-profile".
    Index _games;     // Of Steam, by number.
    Index _programs;  // By name.
    Index _paths;     // Of programs.
    Index _appImages; // By the first letters of the file's name.
    Index _flatpaks;
    Index _snaps;
};

} // namespace quorvane
