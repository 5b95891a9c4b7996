#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

class QSocketNotifier;

namespace quorvane {

// Follows a running process, a child or not, until it ends. A child is reaped then. The process goes
// on when this object is gone.
class Process : public QObject
{
    Q_OBJECT

public:
    explicit Process(qint64 pid, QObject *parent = nullptr);
    ~Process() override;

    qint64 pid() const { return _pid; }
    // Milliseconds since the construction.
    qint64 age() const { return _age.elapsed(); }

    // Sends SIGTERM. An end after that is no error.
    void terminate();

Q_SIGNALS:
    // The process has ended. The error is GLib's text for an exit code other than 0 or a signal; it is
    // empty otherwise, and for a process that is no child.
    void ended(const QString &error);

private:
    void _look();

    qint64 _pid;
    int _pidfd;
    std::unique_ptr<QSocketNotifier> _notifier;
    QTimer _timer; // Where the kernel has no pidfd to give.
    bool _terminated = false;
    QElapsedTimer _age;
};

} // namespace quorvane
