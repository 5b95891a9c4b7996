#include "launch_p.h"

#include "commandlines_p.h"

#include <quorvaneshell/pictures/regularfile_p.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <cstdlib>
#include <glib.h>
#include <limits>
#include <unistd.h>

namespace quorvane {

namespace {

constexpr const char *mainGroup = G_KEY_FILE_DESKTOP_GROUP;

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
        g_autofree gchar *path = g_find_program_in_path(arguments.first().constData());
        if (path)
            return arguments;
    }
    return {};
}

QByteArray text(GKeyFile *file, const QByteArray &group, const char *key)
{
    g_autofree gchar *text = g_key_file_get_string(file, group.constData(), key, nullptr);
    return text;
}

bool flag(GKeyFile *file, const char *key)
{
    return g_key_file_get_boolean(file, mainGroup, key, nullptr);
}

// Of an instance of GIO's own the shared connection to the bus would come with each launch: opening
// it waits, and its end is that of the process. So command lines are made here.
struct Command
{
    QVector<QByteArrayList> lines;
    QByteArray folder;
    bool inTerminal = false;
};

Command readCommand(const Application &application, const QString &action,
                    const QByteArrayList &uris)
{
    const QByteArray data = readRegularFile(application.path, largestEntry);
    g_autoptr(GKeyFile) file = g_key_file_new();
    if (data.isEmpty()
        || !g_key_file_load_from_data(file, data.constData(), size_t(data.size()), G_KEY_FILE_NONE,
                                      nullptr))
        return {};
    const QByteArray group
            = action.isEmpty() ? QByteArray(mainGroup) : "Desktop Action " + action.toUtf8();
    const FieldTexts texts { text(file, mainGroup, G_KEY_FILE_DESKTOP_KEY_ICON),
                             application.name.toUtf8(), QFile::encodeName(application.path),
                             flag(file, "X-GIO-NoFuse") };
    return { commandLines(text(file, group, G_KEY_FILE_DESKTOP_KEY_EXEC), uris, texts),
             text(file, mainGroup, G_KEY_FILE_DESKTOP_KEY_PATH),
             flag(file, G_KEY_FILE_DESKTOP_KEY_TERMINAL) };
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

Launch launch(const Application &application, const QString &action, const QByteArrayList &uris,
              bool inTerminal)
{
    const Command command = readCommand(application, action, uris);
    Launch result;
    if (command.lines.isEmpty())
        result.error = QStringLiteral("%1 has no program to launch").arg(application.path);
    QByteArrayList before;
    if (command.inTerminal || inTerminal) {
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

bool isActivatedByBus(const Application &application)
{
    return application.busActivatable && QDBusConnection::sessionBus().isConnected();
}

QString busName(const Application &application)
{
    return QFileInfo(application.path).completeBaseName();
}

QDBusPendingCall activate(const Application &application, const QString &action,
                          const QByteArrayList &uris)
{
    constexpr int noTimeout = std::numeric_limits<int>::max();
    const QString name = busName(application);
    QString path = QLatin1Char('/') + name;
    path.replace(QLatin1Char('.'), QLatin1Char('/')).replace(QLatin1Char('-'), QLatin1Char('_'));
    const auto call = [&](const QString &method, const QVariantList &arguments) {
        auto message = QDBusMessage::createMethodCall(
                name, path, QStringLiteral("org.freedesktop.Application"), method);
        message.setArguments(arguments + QVariantList { QVariantMap() });
        return QDBusConnection::sessionBus().asyncCall(message, noTimeout);
    };
    if (!action.isEmpty())
        return call(QStringLiteral("ActivateAction"), { action, QVariantList() });
    if (uris.isEmpty())
        return call(QStringLiteral("Activate"), {});
    QStringList texts;
    for (const QByteArray &uri : uris)
        texts += QString::fromLatin1(uri);
    return call(QStringLiteral("Open"), { texts });
}

} // namespace quorvane
