#include "application_p.h"

#include "categoryname_p.h"

#include <quorvaneshell/pictures/iconsource_p.h>
#include <quorvaneshell/search/usercollator_p.h>
#include <quorvaneshell/search/wordmatch.h>

#include <QCollator>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <gio/gio.h>

namespace quorvane {

namespace {

// A file that changes twice in one tick of the kernel's clock has the same stamp after both.
constexpr qint64 settlingTime = 1'000'000'000;

constexpr const char *desktopGroup = G_KEY_FILE_DESKTOP_GROUP;

QByteArray text(GKeyFile *file, const char *key)
{
    g_autofree gchar *text = g_key_file_get_string(file, desktopGroup, key, nullptr);
    return text;
}

bool flag(GKeyFile *file, const char *key)
{
    return g_key_file_get_boolean(file, desktopGroup, key, nullptr);
}

QString localText(GKeyFile *file, const char *key, const QByteArray &group = desktopGroup)
{
    g_autofree gchar *text
            = g_key_file_get_locale_string(file, group.constData(), key, nullptr, nullptr);
    return QString::fromUtf8(text).trimmed();
}

QStringList list(GKeyFile *file, const QByteArray &key)
{
    g_auto(GStrv) texts
            = g_key_file_get_string_list(file, desktopGroup, key.constData(), nullptr, nullptr);
    QStringList list;
    for (auto *text = texts; text && *text; ++text) {
        if (**text)
            list += QString::fromUtf8(*text);
    }
    return list;
}

// GLib's own function for this cuts at escaped semicolons too.
QStringList localList(GKeyFile *file, const char *key)
{
    g_autofree gchar *locale = g_key_file_get_locale_for_key(file, desktopGroup, key, nullptr);
    return list(file, locale ? QByteArray(key) + '[' + QByteArray(locale) + ']' : QByteArray(key));
}

bool isThere(const QByteArray &program, const QByteArray &folder)
{
    const bool isBelow = program.contains('/') && !g_path_is_absolute(program.constData());
    g_autofree gchar *found = g_find_program_in_path(
            (isBelow && !folder.isEmpty() ? folder + '/' + program : program).constData());
    return found;
}

// Whether what is to be run is installed. Without a command line nothing is missing.
bool hasAllPrograms(GKeyFile *file)
{
    const QByteArray folder = text(file, G_KEY_FILE_DESKTOP_KEY_PATH);
    const QByteArray tried = text(file, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC);
    const QByteArray command = text(file, G_KEY_FILE_DESKTOP_KEY_EXEC).trimmed();
    if (!tried.isEmpty() && !isThere(tried, folder))
        return false;
    g_auto(GStrv) arguments = nullptr;
    return command.isEmpty()
           || (g_shell_parse_argv(command.constData(), nullptr, &arguments, nullptr)
               && isThere(*arguments, folder));
}

bool hasBusName(GKeyFile *file, const QString &path)
{
    const QByteArray name = QFileInfo(path).completeBaseName().toUtf8();
    return flag(file, G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE) && g_dbus_is_name(name.constData())
           && !g_dbus_is_unique_name(name.constData());
}

bool isForThisDesktop(GKeyFile *file)
{
    static const QStringList desktops
            = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    const QStringList only = list(file, G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN);
    const QStringList others = list(file, G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN);
    for (const QString &desktop : desktops) {
        if (only.contains(desktop))
            return true;
        if (others.contains(desktop))
            return false;
    }
    return !g_key_file_has_key(file, desktopGroup, G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN, nullptr);
}

// Names are sometimes given with the ending of a file.
QString iconOf(GKeyFile *file)
{
    QString icon = localText(file, G_KEY_FILE_DESKTOP_KEY_ICON);
    for (const char *ending : { ".png", ".xpm", ".svg" }) {
        if (!icon.startsWith(QLatin1Char('/')) && icon.endsWith(QLatin1String(ending)))
            icon.chop(4);
    }
    return icon.isEmpty() ? QStringLiteral("application-x-executable") : icon;
}

QVariantList actionsOf(GKeyFile *file)
{
    QVariantList actions;
    const QStringList ids = list(file, G_KEY_FILE_DESKTOP_KEY_ACTIONS);
    for (const QString &id : ids) {
        const QByteArray group = "Desktop Action " + id.toUtf8();
        if (!g_key_file_has_group(file, group.constData()))
            continue;
        const QString name = localText(file, G_KEY_FILE_DESKTOP_KEY_NAME, group);
        actions += QVariantMap { { QStringLiteral("id"), id },
                                 { QStringLiteral("name"), name.isEmpty() ? id : name } };
    }
    return actions;
}

bool isApplication(GKeyFile *file)
{
    return text(file, G_KEY_FILE_DESKTOP_KEY_TYPE) == G_KEY_FILE_DESKTOP_TYPE_APPLICATION
           && !flag(file, G_KEY_FILE_DESKTOP_KEY_HIDDEN) && hasAllPrograms(file);
}

bool areSame(const Application &one, const Application &other)
{
    return one.appId == other.appId && one.path == other.path && one.name == other.name
           && one.genericName == other.genericName && one.comment == other.comment
           && one.keywords == other.keywords && one.categories == other.categories
           && one.iconSource == other.iconSource && one.actions == other.actions
           && one.terminal == other.terminal && one.shown == other.shown
           && one.busActivatable == other.busActivatable && one.hasProgram == other.hasProgram
           && one.foldedAbout == other.foldedAbout;
}

InstalledApplications::Read readAnew(const InstalledApplications::Read &before, const QString &path,
                                     const QString &appId, qint64 settled)
{
    const FileStamp stamp = fileStamp(path);
    const bool same = before.application && before.application->appId == appId;
    if (same && !stamp.isNull() && stamp == before.stamp)
        return before;
    const ApplicationPointer read = readApplication(path, appId);
    return { stamp.changed < settled ? stamp : FileStamp(),
             same && read && areSame(*read, *before.application) ? before.application : read };
}

void sort(QVector<ApplicationPointer> *applications)
{
    const QCollator collator = userCollator();
    std::vector<std::pair<QCollatorSortKey, ApplicationPointer>> keys;
    keys.reserve(applications->size());
    for (const ApplicationPointer &application : std::as_const(*applications))
        keys.emplace_back(collator.sortKey(application->name), application);
    std::sort(keys.begin(), keys.end(), [](const auto &one, const auto &other) {
        const int order = one.first.compare(other.first);
        return order != 0 ? order < 0 : one.second->appId < other.second->appId;
    });
    std::transform(keys.cbegin(), keys.cend(), applications->begin(),
                   [](const auto &key) { return key.second; });
}

QStringList categoriesOf(const QVector<ApplicationPointer> &applications, bool all)
{
    QSet<QString> occurring;
    for (const ApplicationPointer &application : applications) {
        if (!application->shown && !all)
            continue;
        for (const QString &category : application->categories)
            occurring.insert(category);
    }
    QSet<QString> categories;
    for (const QString &category : std::as_const(occurring))
        categories.insert(mainCategory(category));
    categories.remove({});
    return sortedByName(categories.values());
}

} // namespace

// Read here and not by GIO, which before its first entry walks through all folders, along any link.
ApplicationPointer readApplication(const QString &path, const QString &appId)
{
    const QByteArray data = readRegularFile(path, largestEntry);
    g_autoptr(GKeyFile) file = g_key_file_new();
    if (data.isEmpty()
        || !g_key_file_load_from_data(file, data.constData(), size_t(data.size()), G_KEY_FILE_NONE,
                                      nullptr)
        || !isApplication(file))
        return {};
    const auto application = QSharedPointer<Application>::create();
    application->name = localText(file, G_KEY_FILE_DESKTOP_KEY_NAME);
    application->busActivatable = hasBusName(file, path);
    application->hasProgram = !text(file, G_KEY_FILE_DESKTOP_KEY_EXEC).trimmed().isEmpty();
    if (application->name.isEmpty() || !(application->busActivatable || application->hasProgram))
        return {};

    application->appId = appId;
    application->path = path;
    application->genericName = localText(file, G_KEY_FILE_DESKTOP_KEY_GENERIC_NAME);
    application->comment = localText(file, G_KEY_FILE_DESKTOP_KEY_COMMENT);
    application->keywords = localList(file, "Keywords");
    application->categories = list(file, G_KEY_FILE_DESKTOP_KEY_CATEGORIES);
    application->iconSource = iconSource(iconOf(file));
    application->actions = actionsOf(file);
    application->terminal = flag(file, G_KEY_FILE_DESKTOP_KEY_TERMINAL);
    application->shown = !flag(file, G_KEY_FILE_DESKTOP_KEY_NO_DISPLAY) && isForThisDesktop(file);

    const auto lines
            = [](const QStringList &texts) { return foldedText(texts.join(QLatin1Char('\n'))); };
    application->foldedName = foldedText(application->name).simplified();
    application->foldedKind = lines(QStringList(application->genericName) + application->keywords);
    application->foldedAbout = lines({ application->comment, localText(file, "X-GNOME-FullName") });
    application->foldedId = foldedText(appId);
    return application;
}

InstalledApplications readApplications(const InstalledApplications &before,
                                       const std::atomic<bool> &cancelled)
{
    InstalledApplications now;
    now.folders = applicationFolders();
    const qint64 settled = QDateTime::currentMSecsSinceEpoch() * 1'000'000 - settlingTime;
    // A file hides all of its id that come later, whatever it has in it.
    QSet<QString> known;
    const auto filter = QDir::AllEntries | QDir::System | QDir::CaseSensitive;
    for (const ApplicationFolder &folder : std::as_const(now.folders)) {
        const QStringList names
                = QDir(folder.path)
                          .entryList({ QStringLiteral("*.desktop") }, filter, QDir::Unsorted);
        for (const QString &name : names) {
            const QString appId = folder.prefix + name.chopped(8);
            if (cancelled || known.contains(appId))
                continue;
            known.insert(appId);
            const QString path = folder.path + QLatin1Char('/') + name;
            const InstalledApplications::Read read
                    = readAnew(before.byPath.value(path), path, appId, settled);
            if (!read.application)
                continue;
            now.sorted += read.application;
            now.byId.insert(appId, read.application);
            now.byPath.insert(path, read);
        }
    }
    sort(&now.sorted);
    now.allCategories = categoriesOf(now.sorted, true);
    now.shownCategories = categoriesOf(now.sorted, false);
    return now;
}

} // namespace quorvane
