#include "icontheme_p.h"

#include "picturereader_p.h"
#include "regularfile_p.h"

#include <quorvane/basedir/basedir.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QIcon>
#include <QMutex>
#include <QSet>
#include <QVector>

#define G_SETTINGS_ENABLE_BACKEND
#include <gio/gio.h>
#include <gio/gsettingsbackend.h>

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <climits>
#include <ctime>
#include <tuple>
#include <vector>

namespace quorvane {

namespace {

constexpr int lookAgainAfter = 1000; // Milliseconds.
constexpr int settlesAfter = 2;      // Seconds; time stamps of files are coarse.
constexpr int longestName = 255;
constexpr int mostThemes = 32;
constexpr int mostFolders = 4000;
constexpr int mostFiles = 200000;
constexpr int mostSizes = 100;   // Folders of a tray item's theme,
constexpr int mostEntries = 900; // and what is in them.
constexpr int mostDashes = 8;
constexpr qint64 mostIndexBytes = 1 << 20;

const std::array<QLatin1String, 3> endings { QLatin1String(".png"), QLatin1String(".svg"),
                                             QLatin1String(".xpm") };

// Read past GSettings, which subscribes to changes: for that it opens GIO's connection to the bus,
// waits for it, and ends the process together with the bus.
QString themeOfSettings()
{
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    if (!source)
        return {};
    g_autoptr(GSettingsSchema) schema
            = g_settings_schema_source_lookup(source, "org.gnome.desktop.interface", true);
    if (!schema || !g_settings_schema_has_key(schema, "icon-theme"))
        return {};
    const QByteArray path = g_settings_schema_get_path(schema);
    g_autoptr(GSettingsBackend) backend = g_settings_backend_get_default();
    g_autoptr(GVariant) value = G_SETTINGS_BACKEND_GET_CLASS(backend)->read(
            backend, (path + "icon-theme").constData(), G_VARIANT_TYPE_STRING, false);
    if (!value) {
        g_autoptr(GSettingsSchemaKey) key = g_settings_schema_get_key(schema, "icon-theme");
        value = g_settings_schema_key_get_default_value(key);
    }
    const bool isText = g_variant_is_of_type(value, G_VARIANT_TYPE_STRING);
    return isText ? QString::fromUtf8(g_variant_get_string(value, nullptr)) : QString();
}

// When a folder changed last. Below zero for one that changed just now, as it may again unseen.
qint64 stampOf(const QString &path)
{
    struct stat state = {};
    if (stat(QFile::encodeName(path).constData(), &state) != 0)
        return 0;
    const bool isSettled = std::time(nullptr) - state.st_mtim.tv_sec > settlesAfter;
    return isSettled ? state.st_mtim.tv_sec * Q_INT64_C(1000000000) + state.st_mtim.tv_nsec : -1;
}

bool isRegular(const QString &path)
{
    return QFileInfo(path).isFile();
}

// Calls the function with the name of each entry, until it returns false.
template<typename Function>
void eachEntry(const QString &folder, Function &&take)
{
    if (folder.startsWith(QLatin1Char(':'))) { // Qt's resources.
        const QStringList names = QDir(folder).entryList();
        for (const QString &name : names)
            take(name);
        return;
    }
    DIR *directory = opendir(QFile::encodeName(folder).constData());
    if (!directory)
        return;
    while (const dirent *entry = readdir(directory)) {
        if (!take(QFile::decodeName(entry->d_name)))
            break;
    }
    closedir(directory);
}

// A folder of a theme, with its sizes in pixels.
struct Folder
{
    int distance(int extent) const
    {
        return extent < smallest ? smallest - extent : qMax(0, extent - largest);
    }

    QString path;
    int size = 0;
    int smallest = 0;
    int largest = INT_MAX;
};

class Theme
{
public:
    Theme() = default;
    Theme(const QString &name, const QStringList &folders);
    // Icons without a theme.
    explicit Theme(const QStringList &folders);

    bool isCurrent() const;
    QString find(const QString &name, int extent) const;
    const QStringList &parents() const { return _parents; }

private:
    struct Place
    {
        quint16 folder;
        quint16 ending;
    };

    void _readIndex(const QByteArray &index, QHash<QString, Folder> &sizes, QStringList &order);
    void _list(const Folder &folder);

    QStringList _parents;
    std::vector<Folder> _folders;
    QHash<QString, QVector<Place>> _files;
    std::vector<std::pair<QString, qint64>> _stamps;
    int _left = mostFiles;
};

Theme::Theme(const QString &name, const QStringList &folders)
{
    QHash<QString, Folder> sizes;
    QStringList order;
    for (const QString &folder : folders) {
        const QString index = folder + QLatin1Char('/') + name + QLatin1String("/index.theme");
        _stamps.emplace_back(index, stampOf(index));
        if (order.isEmpty())
            _readIndex(readRegularFile(index, mostIndexBytes), sizes, order);
    }
    for (const QString &part : std::as_const(order)) {
        for (const QString &base : folders) {
            Folder folder = sizes.value(part);
            folder.path = base + QLatin1Char('/') + name + QLatin1Char('/') + part;
            _list(folder);
        }
    }
}

Theme::Theme(const QStringList &folders)
{
    for (const QString &path : folders) {
        Folder folder;
        folder.path = path;
        _list(folder);
    }
}

void Theme::_readIndex(const QByteArray &index, QHash<QString, Folder> &sizes, QStringList &order)
{
    const auto list = [](const QByteArray &value) {
        return QString::fromUtf8(value).split(QLatin1Char(','), Qt::SkipEmptyParts);
    };
    QHash<QString, QHash<QByteArray, QByteArray>> groups;
    QString group;
    const QList<QByteArray> lines = index.split('\n');
    for (const QByteArray &spaced : lines) {
        const QByteArray line = spaced.trimmed();
        const int equals = line.indexOf('=');
        if (line.startsWith('[') && line.endsWith(']'))
            group = QString::fromUtf8(line.mid(1, line.size() - 2));
        else if (equals > 0 && !line.startsWith('#'))
            groups[group].insert(line.left(equals).trimmed(), line.mid(equals + 1).trimmed());
    }
    const QHash<QByteArray, QByteArray> head = groups.value(QStringLiteral("Icon Theme"));
    _parents = list(head.value("Inherits"));
    const QStringList parts
            = list(head.value("Directories")) + list(head.value("ScaledDirectories"));
    for (const QString &spaced : parts) {
        const QString part = spaced.trimmed();
        const QHash<QByteArray, QByteArray> keys = groups.value(part);
        const int scale = qBound(1, keys.value("Scale", "1").toInt(), 8);
        const int size = qBound(0, keys.value("Size").toInt(), 4096) * scale;
        if (size == 0 || part.contains(QLatin1String("..")) || sizes.contains(part))
            continue;
        const auto limit = [&](const char *key, int otherwise) {
            const int given = keys.value(key).toInt();
            return given > 0 && given <= 4096 ? given * scale : otherwise;
        };
        Folder folder;
        folder.size = folder.smallest = folder.largest = size;
        const QByteArray type = keys.value("Type", "Threshold");
        if (type == "Scalable") {
            folder.smallest = limit("MinSize", size);
            folder.largest = limit("MaxSize", size);
        } else if (type != "Fixed") {
            folder.smallest = size - limit("Threshold", 2 * scale);
            folder.largest = size + limit("Threshold", 2 * scale);
        }
        sizes.insert(part, folder);
        order.append(part);
    }
}

void Theme::_list(const Folder &folder)
{
    if (_stamps.size() >= mostFolders)
        return;
    const qint64 stamp = stampOf(folder.path);
    _stamps.emplace_back(folder.path, stamp);
    if (stamp == 0 && !folder.path.startsWith(QLatin1Char(':')))
        return;
    const auto index = quint16(_folders.size());
    _folders.push_back(folder);
    eachEntry(folder.path, [this, index](const QString &entry) {
        const auto ending
                = std::find_if(endings.cbegin(), endings.cend(),
                               [&entry](QLatin1String end) { return entry.endsWith(end); });
        if (ending != endings.cend())
            _files[entry.left(entry.size() - ending->size())].append(
                    { index, quint16(ending - endings.cbegin()) });
        return --_left > 0;
    });
}

bool Theme::isCurrent() const
{
    return std::all_of(_stamps.cbegin(), _stamps.cend(),
                       [](const std::pair<QString, qint64> &stamp) {
                           return stamp.second >= 0 && stampOf(stamp.first) == stamp.second;
                       });
}

QString Theme::find(const QString &name, int extent) const
{
    QVector<Place> places = _files.value(name);
    // A larger one is better than a smaller one, and the order of the index and of endings says the
    // rest.
    std::sort(places.begin(), places.end(), [&](Place left, Place right) {
        const auto order = [&](Place place) {
            const Folder &folder = _folders[place.folder];
            return std::make_tuple(folder.distance(extent), -folder.size, place.folder,
                                   place.ending);
        };
        return order(left) < order(right);
    });
    for (const Place &place : std::as_const(places)) {
        const QString file
                = _folders[place.folder].path + QLatin1Char('/') + name + endings[place.ending];
        if (isRegular(file))
            return file;
    }
    return {};
}

// The names under which an icon may be found, in their order.
QStringList formsOf(const QString &name)
{
    QStringList forms { name };
    for (const QLatin1String ending : endings) {
        if (name.endsWith(ending))
            forms.append(name.left(name.size() - ending.size()));
    }
    const QString bare = forms.constLast();
    const QString symbolic = QStringLiteral("-symbolic");
    forms.append(bare + symbolic);
    QString shorter = bare;
    for (int i = 0; i < mostDashes && shorter.contains(QLatin1Char('-')); ++i) {
        shorter.truncate(shorter.lastIndexOf(QLatin1Char('-')));
        forms.append(shorter);
    }
    return forms;
}

class Index
{
public:
    QString find(const QString &name, int extent, const IconThemes &themes);

private:
    void _choose();
    void _load(const QString &name);
    bool _isInstalled(const QString &theme) const;

    QMutex _mutex;
    IconThemes _themes;
    std::vector<std::shared_ptr<const Theme>> _chain; // In the order in which they are asked.
    QSet<QString> _names;
    QDeadlineTimer _fresh;
};

bool Index::_isInstalled(const QString &theme) const
{
    return !theme.isEmpty()
           && std::any_of(_themes.folders.cbegin(), _themes.folders.cend(),
                          [&theme](const QString &folder) {
                              return isRegular(folder + QLatin1Char('/') + theme
                                               + QLatin1String("/index.theme"));
                          });
}

void Index::_load(const QString &name)
{
    if (name.isEmpty() || name.contains(QLatin1Char('/')) || name == QLatin1String("hicolor")
        || _names.contains(name) || _names.size() >= mostThemes)
        return;
    _names.insert(name);
    const auto theme = std::make_shared<Theme>(name, _themes.folders);
    _chain.push_back(theme);
    for (const QString &parent : theme->parents())
        _load(parent.trimmed());
}

void Index::_choose()
{
    QString name = _themes.name;
    if (name.isEmpty() || name == QLatin1String("hicolor")) {
        const QStringList known { themeOfSettings(), QStringLiteral("Adwaita"),
                                  QStringLiteral("breeze"), QStringLiteral("Papirus"),
                                  QStringLiteral("gnome") };
        const auto found = std::find_if(known.cbegin(), known.cend(), [this](const QString &theme) {
            return _isInstalled(theme);
        });
        name = found == known.cend() ? QString() : *found;
    }
    _chain.clear();
    _names.clear();
    _load(name);
    _load(_themes.fallback);
    _chain.push_back(std::make_shared<Theme>(QStringLiteral("hicolor"), _themes.folders));
    _chain.push_back(std::make_shared<Theme>(_themes.loose));
}

QString Index::find(const QString &name, int extent, const IconThemes &themes)
{
    const QMutexLocker lock(&_mutex);
    const bool isOther = _chain.empty() || !(themes == _themes);
    if (isOther || _fresh.hasExpired()) {
        _themes = themes;
        const bool isCurrent = !isOther
                               && std::all_of(_chain.cbegin(), _chain.cend(),
                                              [](const std::shared_ptr<const Theme> &theme) {
                                                  return theme->isCurrent();
                                              });
        if (!isCurrent)
            _choose();
        _fresh.setRemainingTime(lookAgainAfter);
    }
    const QStringList forms = formsOf(name);
    for (const QString &form : forms) {
        for (const auto &theme : _chain) {
            const QString file = theme->find(form, extent);
            if (!file.isEmpty())
                return file;
        }
    }
    return {};
}

Q_GLOBAL_STATIC(Index, icons)

// How well an icon of a folder like "48x48" or "scalable" suits: less is better, and a larger one
// is better than a smaller one.
int misfit(const QString &folder, int extent)
{
    const int own = folder.section(QLatin1Char('x'), 0, 0).toInt();
    if (own == 0 || own >= extent)
        return qMax(0, own - extent);
    return INT_MAX / 2 - own;
}

} // namespace

IconThemes IconThemes::ofApplication()
{
    IconThemes themes { QIcon::themeName(), QIcon::fallbackThemeName(), QIcon::themeSearchPaths(),
                        QIcon::fallbackSearchPaths() };
    QStringList folders { QDir::homePath() + QLatin1String("/.icons"),
                          xdg::dataHome() + QLatin1String("/icons") };
    const QStringList dataDirs = xdg::dataDirs();
    for (const QString &dir : dataDirs)
        folders.append(dir + QLatin1String("/icons"));
    themes.folders += folders;
    themes.loose += folders;
    themes.loose += QStringLiteral("/usr/share/pixmaps");
    themes.folders.removeDuplicates();
    themes.loose.removeDuplicates();
    return themes;
}

QString iconFile(const QString &name, int extent, const IconThemes &themes)
{
    // Themes are not left by way of a name.
    if (name.isEmpty() || name.size() > longestName || name.contains(QLatin1Char('/')))
        return {};
    return icons->find(name, extent, themes);
}

QString iconFileAt(const QString &path)
{
    if (path.contains(QChar(0)))
        return {};
    for (const char *ending : { "", ".svg", ".png", ".xpm" }) {
        const QString file = path + QLatin1String(ending);
        if (isRegular(file))
            return file;
    }
    return {};
}

QString iconFileInFolder(const QString &folder, const QString &name, int extent)
{
    if (name.contains(QLatin1Char('/')) || folder.contains(QChar(0)))
        return {};
    QString best = iconFileAt(folder + QLatin1Char('/') + name);
    if (!best.isEmpty())
        return best;
    int leastMisfit = INT_MAX;
    int left = mostEntries;
    const QString theme = folder + QLatin1String("/hicolor/");
    QStringList sizes;
    eachEntry(theme, [&, seen = 0](const QString &size) mutable {
        if (!size.startsWith(QLatin1Char('.')))
            sizes.append(size);
        return ++seen < mostSizes;
    });
    for (const QString &size : std::as_const(sizes)) {
        const int itsMisfit = misfit(size, extent);
        if (itsMisfit >= leastMisfit)
            continue;
        eachEntry(theme + size, [&](const QString &context) {
            const QString file = context.startsWith(QLatin1Char('.'))
                                         ? QString()
                                         : iconFileAt(theme + size + QLatin1Char('/') + context
                                                      + QLatin1Char('/') + name);
            if (!file.isEmpty()) {
                leastMisfit = itsMisfit;
                best = file;
            }
            return --left > 0;
        });
    }
    return best;
}

} // namespace quorvane
