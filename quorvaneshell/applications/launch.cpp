#include "launch_p.h"

#include "commandlines_p.h"
#include "desktopfile_p.h"
#include "shellwords_p.h"

#include <QFile>

#include <csignal>
#include <cstdlib>
#include <glib.h>
#include <unistd.h>
#include <vector>

namespace quorvane {

namespace {

// What these say is about the shell itself: how it draws, and the click by which it was started.
constexpr const char *ownVariables[] = {
    "DESKTOP_STARTUP_ID",
    "XDG_ACTIVATION_TOKEN",
    "QT_WAYLAND_SHELL_INTEGRATION",
};

constexpr const char *pidVariable = "GIO_LAUNCHED_DESKTOP_FILE_PID=";

// The one that the user has chosen comes before those that are known by name.
QByteArrayList terminal()
{
    for (const char *command : { "xdg-terminal-exec", "x-terminal-emulator -e", "kgx -e",
                                 "gnome-terminal --", "konsole -e", "xfce4-terminal -x",
                                 "mate-terminal -x", "foot", "alacritty -e", "xterm -e" }) {
        const QByteArrayList arguments = QByteArray(command).split(' ');
        if (isInstalled(arguments.first()))
            return arguments;
    }
    return {};
}

// Of an instance of GIO's own the shared connection to the bus would come with each launch: opening
// it waits, and its end is that of the process. So command lines are made here.
struct Command
{
    QVector<QByteArrayList> lines;
    QByteArray folder;
    bool inTerminal = false;
};

Command readCommand(const LaunchRequest &request)
{
    const Application &application = *request.application;
    const DesktopFile file(application.path);
    if (!file.isValid())
        return {};
    const QByteArray exec
            = file.text(G_KEY_FILE_DESKTOP_KEY_EXEC, DesktopFile::actionGroup(request.action));
    const FieldTexts texts { file.text(G_KEY_FILE_DESKTOP_KEY_ICON), application.name.toUtf8(),
                             QFile::encodeName(application.path), file.flag("X-GIO-NoFuse") };
    return { commandLines(exec, request.uris, texts), file.text(G_KEY_FILE_DESKTOP_KEY_PATH),
             file.flag(G_KEY_FILE_DESKTOP_KEY_TERMINAL) };
}

// A platform of Qt that stands alone is the shell's own choice: others may not have it, or have no
// window on it. A list of alternatives ("wayland;xcb") is what is set for all programs.
bool isOwnPlatform(const char *platform)
{
    return platform && !QByteArray(platform).contains(';');
}

gchar **childEnvironment(const Application &application)
{
    gchar **environment = g_get_environ();
    for (const char *variable : ownVariables)
        environment = g_environ_unsetenv(environment, variable);
    if (isOwnPlatform(g_environ_getenv(environment, "QT_QPA_PLATFORM")))
        environment = g_environ_unsetenv(environment, "QT_QPA_PLATFORM");
    environment = g_environ_setenv(environment, "GIO_LAUNCHED_DESKTOP_FILE",
                                   QFile::encodeName(application.path).constData(), TRUE);
    // Room for the number, which only the child knows.
    return g_environ_setenv(environment, "GIO_LAUNCHED_DESKTOP_FILE_PID", "                    ",
                            TRUE);
}

char *pidText(gchar **environment)
{
    for (; *environment; ++environment) {
        if (g_str_has_prefix(*environment, pidVariable))
            return *environment + qstrlen(pidVariable);
    }
    return nullptr;
}

// Between fork and exec. A terminal that goes away takes its session with it, and a shell may have
// blocked signals to read them from a file descriptor.
void prepareChild(gpointer pidText)
{
    setsid();
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);

    char digits[20];
    int length = 0;
    for (pid_t pid = getpid(); pid > 0; pid /= 10)
        digits[length++] = static_cast<char>('0' + pid % 10);
    auto *text = static_cast<char *>(pidText);
    while (length > 0)
        *text++ = digits[--length];
    *text = 0;
}

qint64 spawn(const QByteArrayList &line, const QByteArray &folder, gchar **environment,
             QString *error)
{
    std::vector<gchar *> arguments;
    for (const QByteArray &argument : line)
        arguments.push_back(const_cast<gchar *>(argument.constData()));
    arguments.push_back(nullptr);
    GPid pid = 0;
    g_autoptr(GError) problem = nullptr;
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD);
    if (!g_spawn_async(folder.isEmpty() ? nullptr : folder.constData(), arguments.data(),
                       environment, flags, prepareChild, pidText(environment), &pid, &problem))
        *error = QString::fromUtf8(problem->message);
    return pid;
}

} // namespace

Launch launchProgram(const LaunchRequest &request)
{
    const Command command = readCommand(request);
    const Application &application = *request.application;
    Launch result;
    if (command.lines.isEmpty())
        result.error = QStringLiteral("%1 has no program to launch").arg(application.path);
    QByteArrayList before;
    if (command.inTerminal || request.inTerminal) {
        before = terminal();
        if (before.isEmpty())
            result.error = QStringLiteral("There is no terminal for %1").arg(application.name);
    }
    g_auto(GStrv) environment = childEnvironment(application);
    for (auto line = command.lines.cbegin(); line != command.lines.cend() && result.error.isEmpty();
         ++line) {
        const qint64 pid = spawn(before + *line, command.folder, environment, &result.error);
        if (pid > 0)
            result.pids += pid;
    }
    return result;
}

} // namespace quorvane
