#include "installedapplications_p.h"

#include "applicationfile_p.h"
#include "categoryname_p.h"

#include <quorvaneshell/search/usercollator_p.h>

#include <QDateTime>
#include <QDir>
#include <QSet>

#include <algorithm>

namespace quorvane {

namespace {

// A file that changes twice in one tick of the kernel's clock has the same stamp after both.
constexpr qint64 settlingTime = 1'000'000'000;

bool areSame(const Application &one, const Application &other)
{
    return one.appId == other.appId && one.path == other.path && one.name == other.name
           && one.genericName == other.genericName && one.comment == other.comment
           && one.keywords == other.keywords && one.categories == other.categories
           && one.iconSource == other.iconSource && one.mimeTypes == other.mimeTypes
           && one.actions == other.actions && one.terminal == other.terminal
           && one.shown == other.shown && one.busActivatable == other.busActivatable
           && one.hasProgram == other.hasProgram && one.startupWmClass == other.startupWmClass
           && one.exec == other.exec && one.isAppImage == other.isAppImage
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
