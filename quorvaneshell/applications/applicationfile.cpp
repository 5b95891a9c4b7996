#include "applicationfile_p.h"

#include "desktopfile_p.h"
#include "shellwords_p.h"

#include <quorvaneshell/pictures/iconsource_p.h>
#include <quorvaneshell/search/wordmatch.h>

#include <QFileInfo>

#include <gio/gio.h>

namespace quorvane {

namespace {

bool isThere(const QByteArray &program, const QByteArray &folder)
{
    const bool isBelow = program.contains('/') && !program.startsWith('/');
    return isInstalled(isBelow && !folder.isEmpty() ? folder + '/' + program : program);
}

// Whether what is to be run is installed. Without a command line nothing is missing.
bool hasAllPrograms(const DesktopFile &file)
{
    const QByteArray folder = file.text(G_KEY_FILE_DESKTOP_KEY_PATH);
    const QByteArray tried = file.text(G_KEY_FILE_DESKTOP_KEY_TRY_EXEC);
    const QByteArray command = file.text(G_KEY_FILE_DESKTOP_KEY_EXEC).trimmed();
    if (!tried.isEmpty() && !isThere(tried, folder))
        return false;
    const QByteArrayList words = shellWords(command);
    return command.isEmpty() || (!words.isEmpty() && isThere(words.first(), folder));
}

bool hasBusName(const DesktopFile &file, const QString &path)
{
    const QByteArray name = QFileInfo(path).completeBaseName().toUtf8();
    return file.flag(G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE) && g_dbus_is_name(name.constData())
           && !g_dbus_is_unique_name(name.constData());
}

bool isForThisDesktop(const DesktopFile &file)
{
    static const QStringList desktops
            = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    const QStringList only = file.list(G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN);
    const QStringList others = file.list(G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN);
    for (const QString &desktop : desktops) {
        if (only.contains(desktop))
            return true;
        if (others.contains(desktop))
            return false;
    }
    return !file.hasKey(G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN);
}

// Names are sometimes given with the ending of a file.
QString iconOf(const DesktopFile &file, const QByteArray &group)
{
    QString icon = file.localText(G_KEY_FILE_DESKTOP_KEY_ICON, group);
    for (const char *ending : { ".png", ".xpm", ".svg" }) {
        if (!icon.startsWith(QLatin1Char('/')) && icon.endsWith(QLatin1String(ending)))
            icon.chop(4);
    }
    return icon;
}

QVariantList actionsOf(const DesktopFile &file)
{
    QVariantList actions;
    const QStringList ids = file.list(G_KEY_FILE_DESKTOP_KEY_ACTIONS);
    for (const QString &id : ids) {
        const QByteArray group = DesktopFile::actionGroup(id);
        if (!file.hasGroup(group))
            continue;
        const QString name = file.localText(G_KEY_FILE_DESKTOP_KEY_NAME, group);
        actions += QVariantMap { { QStringLiteral("id"), id },
                                 { QStringLiteral("text"), name.isEmpty() ? id : name },
                                 { QStringLiteral("iconSource"), iconSource(iconOf(file, group)) } };
    }
    return actions;
}

bool isAppImage(const DesktopFile &file)
{
    for (const char *key : { "X-AppImage-Identifier", "X-AppImage-Name", "X-AppImage-Version",
                             "X-AppImage-Arch", "X-AppImage-Integrate" }) {
        if (file.hasKey(key))
            return true;
    }
    return false;
}

bool isApplication(const DesktopFile &file)
{
    return file.isValid()
           && file.text(G_KEY_FILE_DESKTOP_KEY_TYPE) == G_KEY_FILE_DESKTOP_TYPE_APPLICATION
           && !file.flag(G_KEY_FILE_DESKTOP_KEY_HIDDEN) && hasAllPrograms(file);
}

// The texts that a search compares.
void fold(Application *application, const QString &fullName)
{
    const auto lines
            = [](const QStringList &texts) { return foldedText(texts.join(QLatin1Char('\n'))); };
    application->foldedName = foldedText(application->name).simplified();
    application->foldedKind = lines(QStringList(application->genericName) + application->keywords);
    application->foldedAbout = lines({ application->comment, fullName });
    application->foldedId = foldedText(application->appId);
}

} // namespace

ApplicationPointer readApplication(const QString &path, const QString &appId)
{
    const DesktopFile file(path);
    if (!isApplication(file))
        return {};
    const auto application = QSharedPointer<Application>::create();
    application->name = file.localText(G_KEY_FILE_DESKTOP_KEY_NAME);
    application->busActivatable = hasBusName(file, path);
    application->exec = file.text(G_KEY_FILE_DESKTOP_KEY_EXEC).trimmed();
    application->hasProgram = !application->exec.isEmpty();
    if (application->name.isEmpty() || !(application->busActivatable || application->hasProgram))
        return {};

    const QString icon = iconOf(file, DesktopFile::actionGroup({}));
    application->appId = appId;
    application->path = path;
    application->genericName = file.localText(G_KEY_FILE_DESKTOP_KEY_GENERIC_NAME);
    application->comment = file.localText(G_KEY_FILE_DESKTOP_KEY_COMMENT);
    application->keywords = file.localList("Keywords");
    application->categories = file.list(G_KEY_FILE_DESKTOP_KEY_CATEGORIES);
    application->iconSource
            = iconSource(icon.isEmpty() ? QStringLiteral("application-x-executable") : icon);
    application->mimeTypes = ';' + file.text(G_KEY_FILE_DESKTOP_KEY_MIME_TYPE) + ';';
    application->actions = actionsOf(file);
    application->startupWmClass = file.localText(G_KEY_FILE_DESKTOP_KEY_STARTUP_WM_CLASS);
    application->isAppImage = isAppImage(file);
    application->terminal = file.flag(G_KEY_FILE_DESKTOP_KEY_TERMINAL);
    application->shown = !file.flag(G_KEY_FILE_DESKTOP_KEY_NO_DISPLAY) && isForThisDesktop(file);
    fold(application.data(), file.localText("X-GNOME-FullName"));
    return application;
}

} // namespace quorvane
