#include "windowmatcher_p.h"

#include "shellwords_p.h"

#include <QSet>
#include <QUrl>

#include <algorithm>

namespace quorvane {

namespace {

// An AppImage is mounted in a folder that begins with this, has some letters of the file's name,
// and ends with as many by chance.
constexpr const char *mountName = "/.mount_";
constexpr int mountLetters = 6;

// No application has a longer one.
constexpr int longestClass = 1000;

// How well the program of an entry fits, worst first.
enum Score {
    NoProgram,
    OtherArguments, // It lacks some that make it what it is.
    OtherOptions,
    AllArguments, // One more for each.
    SamePath = 1000
};

const QLatin1String desktopEnding(".desktop");

// How names are compared: "Signal Beta" is signal-beta.
QString foldedName(const QString &name)
{
    return name.toLower().replace(QLatin1Char(' '), QLatin1Char('-'));
}

// Of an id in reverse-domain notation, which has two dots at least; empty for any other.
QString lastPart(const QString &id)
{
    if (id.count(QLatin1Char('.')) < 2)
        return {};
    const QString last = id.section(QLatin1Char('.'), -1);
    // "org.telegram.desktop", "python3.11.2"
    const bool isTelling
            = !last.isEmpty() && !last.front().isDigit() && last != QLatin1String("desktop");
    return isTelling ? last : QString();
}

QString optionValue(const QStringList &arguments, const char *name)
{
    const QString option = QLatin1String(name) + QLatin1Char('=');
    for (const QString &argument : arguments) {
        if (argument.startsWith(option))
            return argument.mid(option.size());
    }
    return {};
}

QString withoutEdges(QString name)
{
    while (name.endsWith(QLatin1Char('_')))
        name.chop(1);
    while (name.startsWith(QLatin1Char('_')))
        name.remove(0, 1);
    return name;
}

// The name that Chromium and its kin have for an app: its id, or host and path.
QString webAppName(const QStringList &arguments)
{
    const QString id = optionValue(arguments, "--app-id");
    if (!id.isEmpty())
        return id.toLower();
    const QUrl url(optionValue(arguments, "--app"));
    if (url.host().isEmpty())
        return {};
    QString name = url.host() + QLatin1Char('_') + url.path();
    return withoutEdges(foldedName(name.replace(QLatin1Char('/'), QLatin1Char('_'))));
}

// "crx_id", "host__path", and with browser and profile "chrome-id-Default".
QString webAppKey(const QString &folded)
{
    if (folded.startsWith(QLatin1String("crx_")))
        return withoutEdges(folded.mid(4));
    const int first = int(folded.indexOf(QLatin1Char('-')));
    const int last = int(folded.lastIndexOf(QLatin1Char('-')));
    if (first < 0 || first == last)
        return withoutEdges(folded);
    return withoutEdges(folded.mid(first + 1, last - first - 1)) + folded.mid(last);
}

QString gameNumber(const QStringList &arguments)
{
    const QLatin1String address("steam://rungameid/");
    for (const QString &argument : arguments) {
        if (argument.startsWith(address))
            return argument.mid(address.size());
    }
    return {};
}

QString fileName(const QString &path)
{
    return path.section(QLatin1Char('/'), -1);
}

// The letters of an AppImage's name in the folder where it is mounted.
QString mountedName(const QString &path)
{
    const int start = int(path.indexOf(QLatin1String(mountName)));
    if (start < 0)
        return {};
    const QString name = path.mid(start + int(qstrlen(mountName))).section(QLatin1Char('/'), 0, 0);
    return name.left(qMax(0, int(name.size()) - mountLetters));
}

// "name" for a program somewhere below /usr/lib/name, which may have any name itself.
QString folderName(const QString &path)
{
    for (const char *parent :
         { "/usr/lib/", "/usr/lib64/", "/usr/libexec/", "/usr/share/", "/opt/" }) {
        if (!path.startsWith(QLatin1String(parent)))
            continue;
        const QStringList parts = path.mid(int(qstrlen(parent))).split(QLatin1Char('/'));
        int part = 0;
        while (part < parts.size()
               && (parts.at(part).endsWith(QLatin1String("-linux-gnu"))
                   || parts.at(part) == QLatin1String("libexec")))
            ++part;
        const QString name = part + 1 < parts.size() ? foldedName(parts.at(part)) : QString();
        return isInterpreter(name) ? QString() : name;
    }
    return {};
}

// Chromium makes one text of its command line.
QByteArrayList commandLine(const ProcessIdentity &process)
{
    const QByteArray first = process.commandLine.value(0);
    const bool isJoined = process.commandLine.size() == 1
                          && first.startsWith(process.executable.toUtf8() + ' ');
    return isJoined ? first.split(' ') : process.commandLine;
}

bool areSamePaths(const QString &one, const QString &other)
{
    const auto inPath = [](const QString &path) {
        for (const char *folder : { "/usr/bin/", "/bin/", "/usr/local/bin/", "/usr/games/" }) {
            if (path.startsWith(QLatin1String(folder)))
                return fileName(path);
        }
        return path;
    };
    return !one.isEmpty() && inPath(one) == inPath(other);
}

// Whether an entry without it would be another application, or none.
bool isEssential(const QString &argument)
{
    return !argument.startsWith(QLatin1Char('-')) || argument.startsWith(QLatin1String("--app"))
           || argument.startsWith(QLatin1String("--profile"));
}

std::vector<int> common(const std::vector<int> &one, const std::vector<int> &other)
{
    std::vector<int> both;
    std::set_intersection(one.cbegin(), one.cend(), other.cbegin(), other.cend(),
                          std::back_inserter(both));
    return both;
}

} // namespace

// What a process runs, in the ways in which entries name it.
struct WindowMatcher::Process
{
    explicit Process(const ProcessIdentity &process)
        : identity(process)
        , started(startedProgram(commandLine(process)))
    {
        if (!process.isKnown)
            return;
        if (!started.isScript)
            paths += process.executable;
        paths += started.path;
        for (const QString &path : std::as_const(paths)) {
            names += programName(path);
            if (folder.isEmpty())
                folder = folderName(path);
        }
        names.removeAll({});
        for (const QString &argument : started.arguments)
            arguments.insert(argument);
        mounted = mountedName(process.executable);
        if (mounted.isEmpty())
            mounted = mountedName(started.path);
    }

    int score(const StartedProgram &program) const
    {
        const bool isSamePath
                = std::any_of(paths.cbegin(), paths.cend(), [&program](const QString &path) {
                      return areSamePaths(program.path, path);
                  });
        if (!isSamePath && !names.contains(program.name)
            && (folder.isEmpty() || folder != program.name))
            return NoProgram;
        int best = AllArguments + int(program.arguments.size());
        for (const QString &argument : program.arguments) {
            if (!arguments.contains(argument))
                best = std::min<int>(best, isEssential(argument) ? OtherArguments : OtherOptions);
        }
        if (program.isIndirect)
            best = OtherArguments;
        return best == OtherArguments || !isSamePath ? best : best + SamePath;
    }

    const ProcessIdentity &identity;
    const StartedProgram started;
    QStringList paths;
    QStringList names;
    QSet<QString> arguments;
    QString folder;  // Of the system, with the name of a program.
    QString mounted; // See mountedName().
};

WindowMatcher::WindowMatcher(const QVector<ApplicationPointer> &applications)
{
    for (const ApplicationPointer &application : applications) {
        Candidate candidate;
        candidate.appId = application->appId;
        candidate.program = startedProgram(shellWords(application->exec));
        candidate.isShown = application->shown;
        candidate.isTerminalEmulator
                = application->categories.contains(QStringLiteral("TerminalEmulator"));
        candidate.isAppImage = application->isAppImage
                               || candidate.program.path.endsWith(QLatin1String(".appimage"),
                                                                  Qt::CaseInsensitive);
        _candidates.push_back(candidate);
        _add(int(_candidates.size()) - 1, application->startupWmClass);
    }
}

void WindowMatcher::_add(int number, const QString &startupWmClass)
{
    const auto add = [number](Index *index, const QString &key) {
        if (!key.isEmpty())
            (*index)[key].push_back(number);
    };
    const Candidate &candidate = _candidates[size_t(number)];
    const StartedProgram &program = candidate.program;
    const QString id = foldedName(candidate.appId);
    add(&_exactIds, candidate.appId);
    add(&_ids, id);
    add(&_classes, foldedName(startupWmClass));
    add(&_lastParts, lastPart(id));
    add(&_programs, program.name);
    add(&_paths, program.path);
    add(&_flatpaks, program.flatpak);
    add(&_snaps, program.snap);
    add(&_games, gameNumber(program.arguments));
    if (candidate.isAppImage)
        add(&_appImages, fileName(program.path).left(mountLetters));
    const QString webApp = webAppName(program.arguments);
    if (webApp.isEmpty())
        return;
    const QString profile = optionValue(program.arguments, "--profile-directory");
    add(&_webApps, webApp);
    add(&_webApps, webApp + QLatin1Char('-')
                           + (profile.isEmpty() ? QStringLiteral("default")
                                                : foldedName(profile).replace(QLatin1Char('-'),
                                                                              QLatin1Char('_'))));
}

QString WindowMatcher::match(const QString &windowClass, const ProcessIdentity &identity) const
{
    const Process process(identity);
    // "python3" says nothing where it runs a script.
    const bool isTelling = !process.started.isScript || !isInterpreter(windowClass.toLower());
    const QString wanted
            = isTelling && windowClass.size() <= longestClass ? windowClass : QString();
    const QString folded = foldedName(wanted);

    Found found;
    const auto choose = [&](const Found &next) {
        Found fitting;
        std::copy_if(next.cbegin(), next.cend(), std::back_inserter(fitting),
                     [&](int number) { return _fits(_candidates[size_t(number)], process); });
        const Found both = found.empty() ? fitting : common(found, fitting);
        if (!both.empty())
            found = both;
    };
    const auto chooseShownFirst = [&](const std::vector<Found> &sources) {
        for (const bool isShown : { true, false }) {
            for (const Found &source : sources) {
                Found some;
                std::copy_if(
                        source.cbegin(), source.cend(), std::back_inserter(some),
                        [&](int number) { return _candidates[size_t(number)].isShown == isShown; });
                choose(some);
            }
        }
    };

    choose(_byId(wanted));
    const QString game = QStringLiteral("steam_app_");
    if (found.size() != 1 && !folded.isEmpty())
        chooseShownFirst({ _ids.value(folded), _classes.value(folded), _lastParts.value(folded),
                           _ids.value(lastPart(folded)), _webApps.value(webAppKey(folded)),
                           folded.startsWith(game) ? _games.value(folded.mid(game.size())) : Found(),
                           _byProgramName(folded) });
    if (found.size() != 1 && identity.isKnown)
        chooseShownFirst({ _byUnit(process), _byProgram(process, found), _bySandbox(process) });
    return found.size() == 1 ? _candidates[size_t(found.front())].appId : QString();
}

WindowMatcher::Found WindowMatcher::_byId(const QString &windowClass) const
{
    const Found found = _exactIds.value(windowClass);
    const bool isFile = found.empty() && windowClass.endsWith(desktopEnding);
    return isFile ? _exactIds.value(windowClass.chopped(desktopEnding.size())) : found;
}

// Those that are more than a program with some options are not known by its name.
WindowMatcher::Found WindowMatcher::_byProgramName(const QString &windowClass) const
{
    Found named = _programs.value(programName(windowClass));
    named.erase(std::remove_if(named.begin(), named.end(),
                               [this](int number) {
                                   const StartedProgram &program
                                           = _candidates[size_t(number)].program;
                                   return program.isIndirect
                                          || std::any_of(program.arguments.cbegin(),
                                                         program.arguments.cend(), isEssential);
                               }),
                named.end());
    return named;
}

// A unit also has what its application has started: terminals, Steam and others start all kinds.
WindowMatcher::Found WindowMatcher::_byUnit(const Process &process) const
{
    for (const QString &id : process.identity.unitIds) {
        Found found = _exactIds.value(id);
        if (found.empty())
            found = _ids.value(foldedName(id));
        found.erase(std::remove_if(found.begin(), found.end(),
                                   [&](int number) {
                                       const Candidate &candidate = _candidates[size_t(number)];
                                       const bool isFirst = process.identity.beginsUnit
                                                            && !candidate.isTerminalEmulator;
                                       return !isFirst
                                              && process.score(candidate.program) == NoProgram;
                                   }),
                    found.end());
        if (!found.empty())
            return found;
    }
    return {};
}

// Those that fit best. What lacks arguments that make it what it is only fits where something else
// speaks for it.
WindowMatcher::Found WindowMatcher::_byProgram(const Process &process, const Found &among) const
{
    Found all = among;
    if (all.empty()) {
        const auto add
                = [&all](const Found &more) { all.insert(all.end(), more.cbegin(), more.cend()); };
        for (const QString &name : process.names)
            add(_programs.value(name));
        add(_programs.value(process.folder));
        for (const QString &path : process.paths)
            add(_paths.value(path));
    }
    Found best;
    int bestScore = among.empty() ? OtherOptions : OtherArguments;
    for (const int number : all) {
        const Candidate &candidate = _candidates[size_t(number)];
        const int score = process.score(candidate.program);
        if (score < bestScore || !_fits(candidate, process))
            continue;
        if (score > bestScore)
            best.clear();
        bestScore = score;
        best.push_back(number);
    }
    std::sort(best.begin(), best.end());
    best.erase(std::unique(best.begin(), best.end()), best.end());
    return best;
}

WindowMatcher::Found WindowMatcher::_bySandbox(const Process &process) const
{
    const ProcessIdentity &identity = process.identity;
    if (!identity.flatpak.isEmpty()) {
        const Found named = _exactIds.value(identity.flatpak);
        return named.empty() ? _flatpaks.value(identity.flatpak) : named;
    }
    if (!identity.snap.isEmpty())
        return _snaps.value(identity.snap);
    return _appImages.value(process.mounted);
}

bool WindowMatcher::_fits(const Candidate &candidate, const Process &process) const
{
    const ProcessIdentity &identity = process.identity;
    if (!identity.isKnown)
        return true;
    if (!identity.flatpak.isEmpty())
        return candidate.program.flatpak == identity.flatpak || candidate.appId == identity.flatpak;
    if (candidate.program.flatpak != identity.flatpak || candidate.program.snap != identity.snap)
        return false;
    if (_appImages.contains(process.mounted))
        return candidate.isAppImage
               && fileName(candidate.program.path).left(mountLetters) == process.mounted;
    // It may also be unpacked and run from there.
    return !candidate.isAppImage
           || identity.executable.contains(QLatin1String("appimage"), Qt::CaseInsensitive);
}

} // namespace quorvane
