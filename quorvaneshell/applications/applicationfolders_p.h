#pragma once

#include <QObject>
#include <QStringList>
#include <QVector>

#include <memory>
#include <vector>

class QFileSystemWatcher;

using GFileMonitor = struct _GFileMonitor;

namespace quorvane {

// A folder with desktop entries: "applications" in a data directory, or one below it, whose name
// begins the ids of its applications ("kde-").
struct ApplicationFolder
{
    QString path;
    QString prefix;

    bool operator==(const ApplicationFolder &other) const
    {
        return path == other.path && prefix == other.prefix;
    }
};

// A folder of that name in each data directory of the Base Directory Specification, whether it is
// there or not, the most important first.
QStringList dataFolders(const QString &name);

// Those that there are, the most important first: the data directories in the order of the Base
// Directory Specification, each before its own folders. Of these it takes 8 levels, and 1,000 in
// all, the upper levels first; each place once, wherever links lead. May be called in any thread.
QVector<ApplicationFolder> applicationFolders();

// Watches these folders, and for those that aren't there the next one above that is.
//
// GIO's monitor of applications does neither see what happens in folders below, nor tell a new
// application from any file in the user's configuration. So the folders have monitors of files,
// which all share one inotify instance. They need GLib's main loop; where Qt runs without
// (QT_NO_GLIB) Qt's own watcher takes over, after a warning: it hears of files that come and go,
// and not of those that are written in place.
class ApplicationFolders : public QObject
{
    Q_OBJECT

public:
    explicit ApplicationFolders(QObject *parent = nullptr);
    ~ApplicationFolders() override;

    // Watches these, as they are now. A folder that went and came back is another one, so this is
    // to be called after each change, before the folders are read.
    void watch(const QVector<ApplicationFolder> &folders);

Q_SIGNALS:
    // Something may be different in them. Comes for each single change.
    void changed();

private:
    struct MonitorDeleter
    {
        void operator()(GFileMonitor *monitor) const;
    };

    void _watch(const QString &path, bool isFolder);
    void _parentChanged();

    QStringList _folders;
    QStringList _parents;                   // Of folders that aren't there.
    QFileSystemWatcher *_watcher = nullptr; // Null where GLib's main loop runs.
    std::vector<std::unique_ptr<GFileMonitor, MonitorDeleter>> _monitors;
};

} // namespace quorvane
