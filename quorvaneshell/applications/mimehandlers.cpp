#include "mimehandlers_p.h"

#include "installedapplications_p.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QRegularExpression>
#include <QSaveFile>

#include <glib.h>

namespace quorvane {

namespace {

constexpr const char *defaultGroup = "Default Applications";
constexpr const char *addedGroup = "Added Associations";
constexpr const char *removedGroup = "Removed Associations";
constexpr qint64 largestList = 1 << 20;

// Lists name files.
QString fileNameOf(const QString &appId)
{
    return appId + QLatin1String(".desktop");
}

// Empty for what is none.
QString appIdOf(const QString &fileName)
{
    return fileName.endsWith(QLatin1String(".desktop")) ? fileName.chopped(8) : QString();
}

// The files in a folder: those of this desktop, then that for all.
QStringList listNames()
{
    QStringList names;
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP")
                                         .toLower()
                                         .split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString &desktop : desktops)
        names += desktop + QStringLiteral("-mimeapps.list");
    names += QStringLiteral("mimeapps.list");
    return names;
}

// What the type is called, its usual name first, and then all that it is a kind of. All types are
// kinds of a sequence of bytes, but whoever opens these is not meant.
QStringList typesOf(const QString &mimeType)
{
    const QMimeDatabase database;
    const QMimeType known = database.mimeTypeForName(mimeType);
    if (!known.isValid())
        return { mimeType };
    QStringList types;
    const QStringList names = QStringList(known.name()) + known.allAncestors();
    for (const QString &name : names) {
        if (name == known.name() || name != QLatin1String("application/octet-stream"))
            types += QStringList(name) + database.mimeTypeForName(name).aliases();
    }
    types.removeDuplicates();
    return types;
}

bool isMimeType(const QString &text)
{
    static const QRegularExpression type(QStringLiteral("\\A[\\w!#$&^.+-]+/[\\w!#$&^.+-]+\\z"));
    return type.match(text).hasMatch();
}

bool has(GKeyFile *file, const QByteArray &type)
{
    return g_key_file_has_key(file, defaultGroup, type.constData(), nullptr);
}

// Puts the id first in a list, or takes it out.
void change(GKeyFile *file, const char *group, const QByteArray &type, const QByteArray &id,
            bool isIn)
{
    g_auto(GStrv) before
            = g_key_file_get_string_list(file, group, type.constData(), nullptr, nullptr);
    std::vector<const gchar *> after;
    if (isIn)
        after.push_back(id.constData());
    for (auto *text = before; text && *text; ++text) {
        if (*text != id)
            after.push_back(*text);
    }
    if (after.empty())
        g_key_file_remove_key(file, group, type.constData(), nullptr);
    else
        g_key_file_set_string_list(file, group, type.constData(), after.data(), after.size());
}

bool write(const QString &path, GKeyFile *file)
{
    gsize size = 0;
    g_autofree gchar *text = g_key_file_to_data(file, &size, nullptr);
    QSaveFile saved(path);
    return saved.open(QIODevice::WriteOnly) && saved.write(text, qint64(size)) == qint64(size)
           && saved.commit();
}

// Null for a file that can't be read as what it should be, so that nothing in it is lost.
GKeyFile *readForChange(const QString &path)
{
    g_autoptr(GKeyFile) file = g_key_file_new();
    const auto flags
            = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    const QByteArray data = readRegularFile(path, largestList);
    const QFileInfo info(path);
    const bool isEmpty = data.isEmpty() && (!info.exists() || (info.isFile() && info.size() == 0));
    if (!isEmpty
        && !g_key_file_load_from_data(file, data.constData(), size_t(data.size()), flags, nullptr))
        return nullptr;
    return static_cast<GKeyFile *>(g_steal_pointer(&file));
}

} // namespace

// What is found for one type and those that it is a kind of.
class MimeHandlers::Search
{
public:
    explicit Search(const MimeHandlers &handlers)
        : _handlers(handlers)
    {
    }

    QStringList found() const { return _found; }

    // What is removed in a list is removed from the less important ones, too.
    void addDefaults(const QByteArray &type)
    {
        QStringList removed = _removed;
        for (const List &list : _handlers._lists) {
            _add(list.file.list(type, defaultGroup), removed);
            removed += _removedIn(list, type);
        }
    }

    void addAssociations(const QByteArray &type)
    {
        for (const List &list : _handlers._lists) {
            if (list.hasOnlyDefaults)
                continue;
            _add(list.file.list(type, addedGroup), _removed);
            _removed += _removedIn(list, type);
            if (!list.folder.isEmpty())
                _addEntries(list, type);
        }
    }

private:
    static QStringList _removedIn(const List &list, const QByteArray &type)
    {
        return list.hasOnlyDefaults ? QStringList() : list.file.list(type, removedGroup);
    }

    void _add(const QStringList &names, const QStringList &removed)
    {
        for (const QString &name : names) {
            const QString appId = appIdOf(name);
            if (!removed.contains(name) && !_found.contains(appId)
                && _handlers._applications.byId.contains(appId))
                _found += appId;
        }
    }

    // A cache may name what a more important folder has another entry for.
    void _addEntries(const List &list, const QByteArray &type)
    {
        QStringList names;
        const QStringList cached = list.cache.list(type, "MIME Cache");
        for (const QString &name : cached) {
            const auto application = _handlers._applications.byId.value(appIdOf(name));
            if (application && _isIn(list.folder, *application))
                names += name;
        }
        for (const ApplicationPointer &application : _handlers._applications.sorted) {
            if (application->mimeTypes.contains(';' + type + ';')
                && _isIn(list.folder, *application))
                names += fileNameOf(application->appId);
        }
        _add(names, _removed);
    }

    static bool _isIn(const QString &folder, const Application &application)
    {
        return application.path.startsWith(folder + QLatin1Char('/'));
    }

    const MimeHandlers &_handlers;
    QStringList _found;
    QStringList _removed;
};

MimeHandlers::MimeHandlers(const InstalledApplications &applications)
    : _applications(applications)
{
    _readLists(QFile::decodeName(g_get_user_config_dir()), false);
    for (auto *folder = g_get_system_config_dirs(); *folder; ++folder)
        _readLists(QFile::decodeName(*folder), false);
    for (const ApplicationFolder &folder : applications.folders) {
        if (folder.prefix.isEmpty())
            _readLists(folder.path, true);
    }
}

void MimeHandlers::_readLists(const QString &folder, bool hasEntries)
{
    const QStringList names = listNames();
    for (const QString &name : names) {
        const bool isForAll = name == names.last();
        const bool hasCache = isForAll && hasEntries;
        _lists.push_back(
                { DesktopFile(folder + QLatin1Char('/') + name),
                  DesktopFile(hasCache ? folder + QStringLiteral("/mimeinfo.cache") : QString()),
                  hasCache ? folder : QString(), !isForAll });
    }
}

QStringList MimeHandlers::handlers(const QString &mimeType) const
{
    if (!isMimeType(mimeType))
        return {};
    Search search(*this);
    const QStringList types = typesOf(mimeType);
    for (const QString &type : types) {
        search.addDefaults(type.toUtf8());
        search.addAssociations(type.toUtf8());
    }
    return search.found();
}

bool MimeHandlers::setDefault(const QString &mimeType, const QString &appId)
{
    if (!isMimeType(mimeType))
        return false;
    const QMimeType known = QMimeDatabase().mimeTypeForName(mimeType);
    const QByteArray type = (known.isValid() ? known.name() : mimeType).toUtf8();
    const QByteArray id = fileNameOf(appId).toUtf8();
    const QString folder = QFile::decodeName(g_get_user_config_dir());
    if (g_mkdir_with_parents(g_get_user_config_dir(), 0700) != 0)
        return false;
    const QStringList names = listNames();
    for (const QString &name : names) {
        const QString path = folder + QLatin1Char('/') + name;
        const bool isForAll = name == names.last();
        g_autoptr(GKeyFile) file = readForChange(path);
        // The desktop's own list comes before the one for all, if it has the type.
        if (!isForAll && (!file || !has(file, type)))
            continue;
        if (!file)
            return false;
        change(file, defaultGroup, type, id, true);
        if (isForAll) {
            change(file, addedGroup, type, id, true);
            change(file, removedGroup, type, id, false);
        }
        if (!write(path, file))
            return false;
    }
    return true;
}

} // namespace quorvane
