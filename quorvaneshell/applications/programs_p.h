#pragma once

#include <QMultiHash>
#include <QObject>

namespace quorvane {

class Process;

// The programs that were launched here and still run, by application id. There is one list for the
// process, so that a dock shows what a menu has launched, and forgets nothing when files change.
class Programs : public QObject
{
    Q_OBJECT

public:
    // Made at the first call, in the thread of the application.
    static Programs *instance();

    // Follows a process until it ends. It is deleted after its ended().
    Process *add(const QString &appId, qint64 pid);

    // The process that was added last, 0 if none runs.
    qint64 pid(const QString &appId) const;

    // Sends SIGTERM to all processes of the application.
    void stop(const QString &appId);

Q_SIGNALS:
    // Another process of the application runs, or one less.
    void changed(const QString &appId);

private:
    using QObject::QObject;

    QMultiHash<QString, Process *> _processes; // Those added last come first.
};

} // namespace quorvane
