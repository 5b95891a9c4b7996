#include "launch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <gio/gdesktopappinfo.h>
#include <unistd.h>

namespace {

constexpr const char *mainGroup = G_KEY_FILE_DESKTOP_GROUP;

QStringList uris(const QList<QUrl> &urls)
{
    QStringList uris;
    for (const QUrl &url : urls) {
        if (url.isEmpty())
            continue;
        const QUrl full = url.isRelative() ? QUrl::fromLocalFile(url.path()) : url;
        uris += QString::fromLatin1(full.toEncoded());
    }
    return uris;
}

// GIO knows some terminals by name. The one that the user has chosen comes before those.
QByteArray chosenTerminal()
{
    for (const char *command : { "xdg-terminal-exec ", "x-terminal-emulator -e " }) {
        const QByteArray program = QByteArray(command).split(' ').first();
        g_autofree gchar *path = g_find_program_in_path(program);
        if (path)
            return command;
    }
    return {};
}

// GIO launches actions without a process id or an error, so an action takes the place of the main
// command; a terminal goes in front of it. Null when GIO finds nothing to launch.
GDesktopAppInfo *readEntry(const QByteArray &path, const QByteArray &action, bool inTerminal)
{
    g_autoptr(GKeyFile) file = g_key_file_new();
    if (!g_key_file_load_from_file(file, path, G_KEY_FILE_NONE, nullptr))
        return nullptr;
    if (inTerminal)
        g_key_file_set_boolean(file, mainGroup, G_KEY_FILE_DESKTOP_KEY_TERMINAL, true);
    QByteArray terminal;
    if (g_key_file_get_boolean(file, mainGroup, G_KEY_FILE_DESKTOP_KEY_TERMINAL, nullptr))
        terminal = chosenTerminal();
    if (action.isEmpty() && terminal.isEmpty() && !inTerminal)
        return g_desktop_app_info_new_from_filename(path);

    const QByteArray group = action.isEmpty() ? QByteArray(mainGroup) : "Desktop Action " + action;
    g_autofree gchar *command
            = g_key_file_get_string(file, group, G_KEY_FILE_DESKTOP_KEY_EXEC, nullptr);
    if (!command)
        return nullptr;
    g_key_file_set_string(file, mainGroup, G_KEY_FILE_DESKTOP_KEY_EXEC,
                          (terminal + QByteArray(command)).constData());
    if (!terminal.isEmpty())
        g_key_file_set_boolean(file, mainGroup, G_KEY_FILE_DESKTOP_KEY_TERMINAL, false);
    return g_desktop_app_info_new_from_keyfile(file);
}

// Between fork and exec. A terminal that goes away takes its session with it, and a shell may have
// blocked signals to read them from a file descriptor.
void prepareChild(gpointer)
{
    setsid();
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void addPid(GDesktopAppInfo *, GPid pid, gpointer pids)
{
    *static_cast<QVector<qint64> *>(pids) += pid;
}

} // namespace

Launch launch(const Application &application, const QString &action, const QList<QUrl> &urls,
              bool inTerminal)
{
    const QByteArray path = QFile::encodeName(application.path);
    g_autoptr(GDesktopAppInfo) entry = readEntry(path, action.toUtf8(), inTerminal);
    if (!entry)
        return { {}, QStringLiteral("%1 has no program to launch").arg(application.path) };

    GList *list = nullptr;
    const QStringList texts = uris(urls);
    for (const QString &text : texts)
        list = g_list_append(list, g_strdup(text.toUtf8()));
    g_autoptr(GAppLaunchContext) context = g_app_launch_context_new();
    g_app_launch_context_setenv(context, "GIO_LAUNCHED_DESKTOP_FILE", path);

    Launch result;
    g_autoptr(GError) error = nullptr;
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD);
    g_desktop_app_info_launch_uris_as_manager(entry, list, context, flags, prepareChild, nullptr,
                                              addPid, &result.pids, &error);
    g_list_free_full(list, g_free);
    if (error)
        result.error = QString::fromUtf8(error->message);
    return result;
}

bool isActivatedByBus(const Application &application)
{
    const QByteArray name = busName(application).toUtf8();
    return application.busActivatable && g_dbus_is_name(name) && !g_dbus_is_unique_name(name)
           && QDBusConnection::sessionBus().isConnected();
}

QString busName(const Application &application)
{
    return QFileInfo(application.path).completeBaseName();
}

QDBusPendingCall activate(const Application &application, const QString &action,
                          const QList<QUrl> &urls)
{
    const QString name = busName(application);
    QString path = QLatin1Char('/') + name;
    path.replace(QLatin1Char('.'), QLatin1Char('/')).replace(QLatin1Char('-'), QLatin1Char('_'));
    const auto call = [&](const QString &method, const QVariantList &arguments) {
        auto message = QDBusMessage::createMethodCall(
                name, path, QStringLiteral("org.freedesktop.Application"), method);
        message.setArguments(arguments + QVariantList { QVariantMap() });
        return QDBusConnection::sessionBus().asyncCall(message);
    };
    if (!action.isEmpty())
        return call(QStringLiteral("ActivateAction"), { action, QVariantList() });
    if (!urls.isEmpty())
        return call(QStringLiteral("Open"), { uris(urls) });
    return call(QStringLiteral("Activate"), {});
}
