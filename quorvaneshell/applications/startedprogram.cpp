#include "startedprogram_p.h"

#include "shellwords_p.h"

#include <QHash>

#include <algorithm>

namespace quorvane {

namespace {

// Each of them may start the next.
constexpr int mostWrappers = 8;
// What comes after them says nothing.
constexpr int mostWords = 1000;

enum class Kind {
    Prefix, // Options, then a command line.
    Shell,
    Interpreter, // Options, then a script.
    Java,
    Wine,
    Flatpak,
    Snap,
    Entry // The id of an application.
};

struct Wrapper
{
    Kind kind;
    const char *withValue; // Options that are followed by a word of their own.
};

const Wrapper *findWrapper(const QString &name)
{
    static const QHash<QString, Wrapper> wrappers = [] {
        struct Named
        {
            const char *names;
            Wrapper wrapper;
        };
        const Named all[] = {
            { "env", { Kind::Prefix, "-u --unset -C --chdir" } },
            { "nice", { Kind::Prefix, "-n --adjustment" } },
            { "ionice", { Kind::Prefix, "-c --class -n --classdata" } },
            { "chrt taskset nohup setsid exec time stdbuf catchsegv", { Kind::Prefix, "" } },
            { "prime-run optirun primusrun gamemoderun mangohud gamescope pw-jack padsp apulse",
              { Kind::Prefix, "-W -H -w -h -r" } },
            { "dbus-launch dbus-run-session systemd-inhibit torsocks proxychains firejail",
              { Kind::Prefix, "--config-file" } },
            { "systemd-run", { Kind::Prefix, "-p --property -u --unit -E --setenv --slice" } },
            { "uwsm app2unit", { Kind::Prefix, "-s -a -t -u -d" } },
            { "sudo pkexec gksu gksudo kdesu kdesudo lxqt-sudo run0",
              { Kind::Prefix, "-u --user -g --group" } },
            { "sh bash dash zsh ksh ash fish", { Kind::Shell, "-o +o --rcfile --init-file" } },
            { "python pypy perl ruby lua luajit php node nodejs gjs gjs-console guile wish tclsh "
              "cjs mono dotnet gtkdialog",
              { Kind::Interpreter, "-W -X -I --include-path" } },
            { "electron nw chrome-sandbox", { Kind::Interpreter, "" } },
            { "java", { Kind::Java, "-cp -classpath --class-path -p --module-path --add-modules" } },
            { "wine wine64 wine-stable wine-development wine-staging wineconsole umu-run proton",
              { Kind::Wine, "" } },
            { "flatpak", { Kind::Flatpak, "" } },
            { "snap", { Kind::Snap, "" } },
            { "gtk-launch gtk4-launch gapplication", { Kind::Entry, "" } },
        };
        QHash<QString, Wrapper> hash;
        for (const Named &named : all) {
            const QStringList names = QString::fromLatin1(named.names).split(QLatin1Char(' '));
            for (const QString &one : names)
                hash.insert(one, named.wrapper);
        }
        return hash;
    }();
    // "python3.11" is "python".
    int length = int(name.size());
    while (length > 0 && (name.at(length - 1).isDigit() || name.at(length - 1) == QLatin1Char('.')))
        --length;
    auto found = wrappers.constFind(name);
    if (found == wrappers.constEnd())
        found = wrappers.constFind(name.left(length));
    return found == wrappers.constEnd() ? nullptr : &found.value();
}

QString lastPart(const QString &path)
{
    const int slash = int(
            std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))));
    return path.mid(slash + 1);
}

bool isAssignment(const QString &word)
{
    const int equals = int(word.indexOf(QLatin1Char('=')));
    return equals > 0 && std::all_of(word.cbegin(), word.cbegin() + equals, [](QChar character) {
               return character.isLetterOrNumber() || character == QLatin1Char('_');
           });
}

bool isFieldCode(const QString &word)
{
    // Those with "@" are flatpak's marks around files.
    return (word.size() == 2 && word.startsWith(QLatin1Char('%')))
           || word.startsWith(QLatin1String("@@"));
}

QStringList decoded(const QByteArrayList &commandLine)
{
    QStringList words;
    for (const QByteArray &word : commandLine)
        words += QString::fromUtf8(word);
    return words;
}

QStringList withoutAssignments(const QStringList &words)
{
    const auto program = std::find_if_not(words.cbegin(), words.cend(), isAssignment);
    return words.mid(int(program - words.cbegin()));
}

// The first word from there on that is no option.
int skipOptions(const QStringList &words, int first, const char *withValue)
{
    const QStringList options = QString::fromLatin1(withValue).split(QLatin1Char(' '));
    int word = first;
    while (word < words.size() && words.at(word).startsWith(QLatin1Char('-'))) {
        if (words.at(word) == QLatin1String("--"))
            return word + 1;
        word += options.contains(words.at(word)) ? 2 : 1;
    }
    return word;
}

// A command that a shell is given as a text: that which it becomes, or the last.
QStringList commandOfShell(const QString &text)
{
    const QStringList words = decoded(shellWords(text.toUtf8()));
    const int exec = int(words.indexOf(QStringLiteral("exec")));
    if (exec >= 0)
        return withoutAssignments(words.mid(exec + 1));
    int first = 0;
    for (int word = 0; word + 1 < words.size(); ++word) {
        if (words.at(word) == QLatin1String("&&") || words.at(word).endsWith(QLatin1Char(';')))
            first = word + 1;
    }
    return withoutAssignments(words.mid(first));
}

QStringList prefixed(const QStringList &words, const Wrapper &wrapper)
{
    const int first = skipOptions(words, 1, wrapper.withValue);
    // "uwsm app -- program"
    if (words.value(first) == QLatin1String("app") && words.size() > first + 1)
        return words.mid(skipOptions(words, first + 1, wrapper.withValue));
    return withoutAssignments(words.mid(first));
}

QStringList ofShell(const QStringList &words, const Wrapper &wrapper, StartedProgram *program)
{
    const int first = skipOptions(words, 1, wrapper.withValue);
    for (int word = 1; word < first && word < words.size(); ++word) {
        const QString &option = words.at(word);
        if (!option.startsWith(QLatin1String("--")) && option.endsWith(QLatin1Char('c')))
            return first < words.size() ? commandOfShell(words.at(first)) : QStringList();
    }
    program->isScript = first < words.size();
    return words.mid(first);
}

QStringList ofInterpreter(const QStringList &words, const Wrapper &wrapper, StartedProgram *program)
{
    const int first = skipOptions(words, 1, wrapper.withValue);
    program->isScript = first < words.size();
    // A text instead of a script.
    return words.mid(1, first - 1).contains(QStringLiteral("-c")) ? QStringList()
                                                                  : words.mid(first);
}

// Windows' paths and their own starter: "start.exe /Unix /home/…/Name.lnk".
QStringList ofWine(const QStringList &words)
{
    int first = 1;
    while (first < words.size()
           && (words.at(first).startsWith(QLatin1Char('-'))
               || lastPart(words.at(first)) == QLatin1String("start.exe")
               || words.at(first) == QLatin1String("start")
               || words.at(first) == QLatin1String("run")
               || words.at(first).compare(QLatin1String("/unix"), Qt::CaseInsensitive) == 0
               || words.at(first).compare(QLatin1String("/exec"), Qt::CaseInsensitive) == 0))
        ++first;
    return words.mid(first);
}

QStringList ofFlatpak(const QStringList &words, StartedProgram *program)
{
    const int run = int(words.indexOf(QStringLiteral("run")));
    const int first = run < 0 ? int(words.size()) : skipOptions(words, run + 1, "");
    if (first >= words.size())
        return {};
    // The branch may be named after the application.
    program->flatpak = words.at(first).section(QLatin1Char('/'), 0, 0);
    QString command = program->flatpak;
    const QLatin1String option("--command=");
    const QStringList options = words.mid(run + 1, first - run - 1);
    for (const QString &word : options) {
        if (word.startsWith(option))
            command = word.mid(option.size());
    }
    return QStringList(command) + words.mid(first + 1);
}

QStringList ofSnap(const QStringList &words, StartedProgram *program)
{
    const int first = skipOptions(words, 2, "");
    if (words.value(1) != QLatin1String("run") || first >= words.size())
        return {};
    program->snap = words.at(first).section(QLatin1Char('.'), 0, 0);
    return words.mid(first);
}

// "gtk-launch name.desktop", "gapplication launch name"
QStringList ofEntry(const QStringList &words)
{
    const int first = skipOptions(words, words.value(1) == QLatin1String("launch") ? 2 : 1, "");
    QStringList inner = words.mid(first);
    if (!inner.isEmpty() && inner.first().endsWith(QLatin1String(".desktop")))
        inner.first().chop(8);
    return inner;
}

// What the wrapper starts; empty if it was called for something else. It is the end where it is run
// by the wrapper and not by the system.
QStringList unwrapped(const QStringList &words, const Wrapper &wrapper, StartedProgram *program,
                      bool *isEnd)
{
    *isEnd = wrapper.kind != Kind::Prefix && wrapper.kind != Kind::Shell;
    switch (wrapper.kind) {
    case Kind::Prefix:
        return prefixed(words, wrapper);
    case Kind::Shell: {
        const QStringList inner = ofShell(words, wrapper, program);
        *isEnd = program->isScript;
        return inner;
    }
    case Kind::Interpreter:
    case Kind::Java:
        return ofInterpreter(words, wrapper, program);
    case Kind::Wine:
        program->isScript = words.size() > 1;
        return ofWine(words);
    case Kind::Flatpak:
        return ofFlatpak(words, program);
    case Kind::Snap:
        return ofSnap(words, program);
    case Kind::Entry:
        program->isIndirect = words.value(1) != QLatin1String("launch");
        return ofEntry(words);
    }
    return {};
}

} // namespace

QString programName(const QString &path)
{
    QString name = lastPart(path).toLower();
    if (name.startsWith(QLatin1Char('.')))
        name.remove(0, 1);
    for (const char *ending : { ".py", ".pl", ".rb", ".js", ".sh", ".jar", ".asar", ".exe", ".lnk",
                                ".bin", "-bin", ".real", "-wrapped", "-server" }) {
        if (name.size() > int(qstrlen(ending)) && name.endsWith(QLatin1String(ending))) {
            name.chop(int(qstrlen(ending)));
            break;
        }
    }
    for (const char *usual : { "main", "__main__", "app", "run", "start", "index", "launcher" }) {
        if (name == QLatin1String(usual))
            return {};
    }
    return name;
}

bool isInterpreter(const QString &name)
{
    const Wrapper *wrapper = findWrapper(name);
    return wrapper && wrapper->kind != Kind::Flatpak && wrapper->kind != Kind::Snap;
}

StartedProgram startedProgram(const QByteArrayList &commandLine)
{
    StartedProgram program;
    QStringList words = withoutAssignments(decoded(commandLine.mid(0, mostWords)));
    bool isEnd = false;
    for (int i = 0; i < mostWrappers && !words.isEmpty() && !isEnd; ++i) {
        const Wrapper *wrapper = findWrapper(programName(words.first()));
        const QStringList inner
                = wrapper ? unwrapped(words, *wrapper, &program, &isEnd) : QStringList();
        if (inner.isEmpty())
            break;
        words = inner;
    }
    if (words.isEmpty())
        return program;
    program.path = words.takeFirst();
    program.name = programName(program.path);
    const QLatin1String snaps("/snap/bin/");
    if (program.path.startsWith(snaps))
        program.snap = program.path.mid(snaps.size()).section(QLatin1Char('.'), 0, 0);
    std::copy_if(words.cbegin(), words.cend(), std::back_inserter(program.arguments),
                 [](const QString &word) { return !isFieldCode(word); });
    return program;
}

} // namespace quorvane
