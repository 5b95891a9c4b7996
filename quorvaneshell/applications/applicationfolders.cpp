#include "applicationfolders_p.h"

#include <QAbstractEventDispatcher>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSet>

#include <gio/gio.h>
#include <sys/stat.h>

namespace quorvane {

namespace {

constexpr int deepest = 8;
constexpr int mostFolders = 1000;

QStringList roots()
{
    return dataFolders(QStringLiteral("applications"));
}

// Where a folder really is; the second number is 0 for what is none.
QPair<quint64, quint64> place(const QString &path)
{
    struct stat status
    {
    };
    if (stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return {};
    return { status.st_dev, status.st_ino };
}

template<typename Add>
void addBelow(const ApplicationFolder &folder, const Add &add)
{
    const QStringList names = QDir(folder.path).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (!name.endsWith(QLatin1String(".desktop")))
            add({ folder.path + QLatin1Char('/') + name, folder.prefix + name + QLatin1Char('-') });
    }
}

// For each folder that isn't there, the next one above that is.
QStringList parentPaths()
{
    QStringList paths;
    const QStringList wanted = roots();
    for (QString path : wanted) {
        if (QFileInfo(path).isDir())
            continue;
        while (!QFileInfo(path).isDir() && path.contains(QLatin1Char('/')))
            path = QFileInfo(path).path();
        paths += path;
    }
    return paths;
}

bool hasGLibLoop()
{
    const auto *dispatcher = QAbstractEventDispatcher::instance();
    return dispatcher && dispatcher->inherits("QEventDispatcherGlib");
}

void warnOnce()
{
    static const bool warned = [] {
        qWarning("Qt runs without GLib's main loop: "
                 "desktop entries that are written in place go unnoticed");
        return true;
    }();
    Q_UNUSED(warned)
}

} // namespace

// GIO's own answer, which it keeps for the life of the process.
QStringList dataFolders(const QString &name)
{
    QStringList folders { QFile::decodeName(g_get_user_data_dir()) };
    for (auto *directory = g_get_system_data_dirs(); *directory; ++directory)
        folders += QFile::decodeName(*directory);
    for (QString &folder : folders)
        folder += QLatin1Char('/') + name;
    return folders;
}

QVector<ApplicationFolder> applicationFolders()
{
    const QStringList paths = roots();
    QVector<QVector<ApplicationFolder>> folders(paths.size()); // Below each root.
    QSet<QPair<quint64, quint64>> known;
    const auto add = [&](int root, const ApplicationFolder &folder) {
        const auto found = place(folder.path);
        if (found.second == 0 || known.contains(found) || known.size() >= mostFolders)
            return;
        known.insert(found);
        folders[root] += folder;
    };
    for (int root = 0; root < paths.size(); ++root)
        add(root, { paths.at(root), QString() });

    // Level by level, so that one that is large takes no place from the others.
    QVector<int> begin(paths.size());
    for (int depth = 1; depth <= deepest; ++depth) {
        for (int root = 0; root < paths.size(); ++root) {
            const QVector<ApplicationFolder> above = folders.at(root).mid(begin.at(root));
            begin[root] += above.size();
            for (const ApplicationFolder &folder : above) {
                if (known.size() < mostFolders)
                    addBelow(folder, [&](const ApplicationFolder &below) { add(root, below); });
            }
        }
    }
    QVector<ApplicationFolder> all;
    for (const QVector<ApplicationFolder> &some : std::as_const(folders))
        all += some;
    return all;
}

ApplicationFolders::ApplicationFolders(QObject *parent)
    : QObject(parent)
{
    if (!hasGLibLoop()) {
        warnOnce();
        _watcher = new QFileSystemWatcher(this);
        connect(_watcher, &QFileSystemWatcher::directoryChanged, this, [this](const QString &path) {
            if (_folders.contains(path))
                Q_EMIT changed();
            else
                _parentChanged();
        });
    }
}

ApplicationFolders::~ApplicationFolders() = default;

void ApplicationFolders::watch(const QVector<ApplicationFolder> &folders)
{
    _folders.clear();
    for (const ApplicationFolder &folder : folders)
        _folders += folder.path;
    if (_watcher && !_watcher->directories().isEmpty())
        _watcher->removePaths(_watcher->directories());
    _monitors.clear();
    for (const QString &path : std::as_const(_folders))
        _watch(path, true);
    do {
        _parents = parentPaths();
        const QStringList parents = QSet<QString>(_parents.cbegin(), _parents.cend()).values();
        for (const QString &path : parents)
            _watch(path, false);
        // What arrived before the watches stood was heard by none of them.
    } while (_parents != parentPaths());
}

void ApplicationFolders::_watch(const QString &path, bool isFolder)
{
    if (_watcher) {
        _watcher->addPath(path);
        return;
    }
    // Not the default, which may be one that connects to the session bus and waits.
    g_autoptr(GFile) file
            = g_vfs_get_file_for_path(g_vfs_get_local(), QFile::encodeName(path).constData());
    GFileMonitor *monitor
            = g_file_monitor_directory(file, G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr);
    if (!monitor)
        return;
    using Slot = void (*)(GFileMonitor *, GFile *, GFile *, GFileMonitorEvent, gpointer);
    const Slot folderSlot = [](GFileMonitor *, GFile *, GFile *, GFileMonitorEvent, gpointer self) {
        Q_EMIT static_cast<ApplicationFolders *>(self)->changed();
    };
    const Slot parentSlot = [](GFileMonitor *, GFile *, GFile *, GFileMonitorEvent, gpointer self) {
        static_cast<ApplicationFolders *>(self)->_parentChanged();
    };
    g_signal_connect(monitor, "changed", G_CALLBACK(isFolder ? folderSlot : parentSlot), this);
    _monitors.emplace_back(monitor);
}

// In a folder above, only the arrival of the one that is missing matters.
void ApplicationFolders::_parentChanged()
{
    if (_parents != parentPaths())
        Q_EMIT changed();
}

void ApplicationFolders::MonitorDeleter::operator()(GFileMonitor *monitor) const
{
    g_file_monitor_cancel(monitor);
    g_object_unref(monitor);
}

} // namespace quorvane
