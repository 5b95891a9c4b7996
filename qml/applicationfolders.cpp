#include "applicationfolders.h"

#include <QAbstractEventDispatcher>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSet>

#include <gio/gio.h>

namespace {

// GIO's own answer, which it keeps for the life of the process.
QStringList roots()
{
    const QString folder = QStringLiteral("/applications");
    QStringList roots { QFile::decodeName(g_get_user_data_dir()) + folder };
    for (auto *directory = g_get_system_data_dirs(); *directory; ++directory)
        roots += QFile::decodeName(*directory) + folder;
    return roots;
}

void add(const ApplicationFolder &folder, QStringList above, QVector<ApplicationFolder> *folders)
{
    const QString place = QFileInfo(folder.path).canonicalFilePath();
    if (place.isEmpty() || above.contains(place))
        return;
    above += place;
    *folders += folder;
    const QStringList names = QDir(folder.path).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (!name.endsWith(QLatin1String(".desktop")))
            add({ folder.path + QLatin1Char('/') + name, folder.prefix + name + QLatin1Char('-') },
                above, folders);
    }
}

QStringList folderPaths()
{
    QStringList paths;
    const QVector<ApplicationFolder> folders = applicationFolders();
    for (const ApplicationFolder &folder : folders)
        paths += folder.path;
    return paths;
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

QVector<ApplicationFolder> applicationFolders()
{
    QVector<ApplicationFolder> folders;
    const QStringList paths = roots();
    for (const QString &path : paths) {
        if (QFileInfo(path).isDir())
            add({ path, QString() }, {}, &folders);
    }
    return folders;
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
    watch();
}

ApplicationFolders::~ApplicationFolders() = default;

void ApplicationFolders::watch()
{
    do {
        _folders = folderPaths();
        _parents = parentPaths();
        _monitors.clear();
        if (_watcher && !(_watcher->directories().isEmpty()))
            _watcher->removePaths(_watcher->directories());
        for (const QString &path : std::as_const(_folders))
            _watch(path, true);
        const QStringList parents = QSet<QString>(_parents.cbegin(), _parents.cend()).values();
        for (const QString &path : parents)
            _watch(path, false);
        // What arrived before the watches stood was heard by none of them.
    } while (_folders != folderPaths() || _parents != parentPaths());
}

void ApplicationFolders::_watch(const QString &path, bool isFolder)
{
    if (_watcher) {
        _watcher->addPath(path);
        return;
    }
    g_autoptr(GFile) file = g_file_new_for_path(QFile::encodeName(path));
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
