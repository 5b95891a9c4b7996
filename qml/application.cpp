#include "application.h"

#include "applicationfolders.h"
#include "iconsource.h"
#include "wordmatch.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <gio/gdesktopappinfo.h>

namespace {

constexpr qint64 largestFile = 1 << 20;

// A pipe would be waited for, and a device may have no end.
QByteArray contents(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > largestFile)
        return {};
    return file.read(largestFile);
}

QStringList list(const char *const *texts)
{
    QStringList result;
    for (; texts && *texts; ++texts)
        result += QString::fromUtf8(*texts);
    return result;
}

QString iconOf(GAppInfo *info)
{
    GIcon *icon = g_app_info_get_icon(info);
    if (G_IS_FILE_ICON(icon)) {
        g_autofree gchar *path = g_file_get_path(g_file_icon_get_file(G_FILE_ICON(icon)));
        return QFile::decodeName(path);
    }
    const auto *names
            = G_IS_THEMED_ICON(icon) ? g_themed_icon_get_names(G_THEMED_ICON(icon)) : nullptr;
    return names && **names ? QString::fromUtf8(*names)
                            : QStringLiteral("application-x-executable");
}

QVariantList actionsOf(GDesktopAppInfo *info)
{
    QVariantList actions;
    for (auto *id = g_desktop_app_info_list_actions(info); *id; ++id) {
        g_autofree gchar *name = g_desktop_app_info_get_action_name(info, *id);
        actions += QVariantMap { { QStringLiteral("id"), QString::fromUtf8(*id) },
                                 { QStringLiteral("name"), QString::fromUtf8(name) } };
    }
    return actions;
}

// Sorting without regard to case is asked of the C locale too, where Qt compares numbers of
// characters. English has no rules of its own beyond those for all languages.
QCollator userCollator()
{
    QCollator collator;
    if (collator.locale().language() == QLocale::C)
        collator.setLocale(QLocale(QLocale::English));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
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

} // namespace

ApplicationPointer readApplication(const QString &path, const QString &appId)
{
    const QByteArray data = contents(path);
    g_autoptr(GKeyFile) file = g_key_file_new();
    if (data.isEmpty()
        || !g_key_file_load_from_data(file, data, data.size(), G_KEY_FILE_NONE, nullptr))
        return {};
    g_autoptr(GDesktopAppInfo) entry = g_desktop_app_info_new_from_keyfile(file);
    if (!entry || g_desktop_app_info_get_is_hidden(entry))
        return {};

    auto *info = G_APP_INFO(entry);
    const auto application = QSharedPointer<Application>::create();
    application->appId = appId;
    application->path = path;
    application->name = QString::fromUtf8(g_app_info_get_name(info));
    application->genericName = QString::fromUtf8(g_desktop_app_info_get_generic_name(entry));
    application->comment = QString::fromUtf8(g_app_info_get_description(info));
    application->keywords = list(g_desktop_app_info_get_keywords(entry));
    application->categories = QString::fromUtf8(g_desktop_app_info_get_categories(entry))
                                      .split(QLatin1Char(';'), Qt::SkipEmptyParts);
    application->iconSource = iconSource(iconOf(info));
    application->actions = actionsOf(entry);
    application->terminal = g_desktop_app_info_get_boolean(entry, G_KEY_FILE_DESKTOP_KEY_TERMINAL);
    application->shown = g_app_info_should_show(info);
    application->busActivatable
            = g_desktop_app_info_get_boolean(entry, G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE);

    application->foldedName = foldedText(application->name).simplified();
    const QStringList words = QStringList { application->name, application->genericName, appId }
                              + application->keywords;
    application->foldedWords = foldedText(words.join(QLatin1Char('\n')));
    return application;
}

QVector<ApplicationPointer> readApplications()
{
    QVector<ApplicationPointer> applications;
    // A file hides all of its id that come later, whatever it has in it.
    QSet<QString> known;
    const QVector<ApplicationFolder> folders = applicationFolders();
    const auto filter = QDir::AllEntries | QDir::System | QDir::CaseSensitive;
    for (const ApplicationFolder &folder : folders) {
        const QStringList names
                = QDir(folder.path)
                          .entryList({ QStringLiteral("*.desktop") }, filter, QDir::Unsorted);
        for (const QString &name : names) {
            const QString appId = folder.prefix + name.chopped(8);
            if (known.contains(appId))
                continue;
            known.insert(appId);
            if (const auto application
                = readApplication(folder.path + QLatin1Char('/') + name, appId))
                applications += application;
        }
    }
    sort(&applications);
    return applications;
}
