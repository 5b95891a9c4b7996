#pragma once

#include "installedapplications_p.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <memory>

namespace quorvane {

class ApplicationFolders;
class WindowMatcher;

// The installed applications, read and watched once for all models of the process.
class ApplicationList : public QObject
{
    Q_OBJECT

public:
    // It goes with the last pointer to it. Nothing is read yet.
    static QSharedPointer<ApplicationList> shared();
    ~ApplicationList() override;

    // Reads the list unless it has been read. Returns when it is there.
    void read();

    // Sorted by name. What has not changed is the same object after a change.
    const QVector<ApplicationPointer> &applications() const { return _read->sorted; }
    // The main categories that occur, in the order of their names.
    QStringList categories(bool ofAll) const
    {
        return ofAll ? _read->allCategories : _read->shownCategories;
    }
    const InstalledApplications &installed() const { return *_read; }
    // Null for an id that is none.
    ApplicationPointer find(const QString &appId) const { return _read->byId.value(appId); }

    // The id of the application to which a window or a process belongs; empty where none fits.
    QString identify(const QString &windowClass, qint64 pid);

    // The icon of an application, as URL; empty for none, and for now while the list is being read:
    // if nobody has done so yet, that begins here, in a thread.
    QString iconSource(const QString &appId);

Q_SIGNALS:
    // The applications are others. Comes at most a few times a second.
    void changed();

private:
    using Read = QSharedPointer<const InstalledApplications>;

    ApplicationList();

    void _readInThread();
    void _take(const Read &read, qint64 milliseconds);

    Read _read;
    bool _isRead = false;
    std::unique_ptr<const WindowMatcher> _matcher; // Null until it is asked for.
    ApplicationFolders *_folders;
    QTimer _timer;
    bool _reading = false;
    std::atomic<bool> _ending { false };
    QThreadPool _reader; // The last, so that it has finished when the others go.
};

} // namespace quorvane
