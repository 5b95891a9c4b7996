#include "process_p.h"

#include <QSocketNotifier>

#include <csignal>
#include <glib.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane {

namespace {

// glibc has had the function only since 2.36.
int openPidfd(qint64 pid)
{
#ifdef SYS_pidfd_open
    return static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(pid), 0));
#else
    Q_UNUSED(pid)
    return -1;
#endif
}

QString errorText(int waitStatus)
{
    g_autoptr(GError) error = nullptr;
    g_spawn_check_wait_status(waitStatus, &error);
    return error ? QString::fromUtf8(error->message) : QString();
}

} // namespace

Process::Process(qint64 pid, QObject *parent)
    : QObject(parent)
    , _pid(pid)
    , _pidfd(openPidfd(pid))
{
    _age.start();
    if (_pidfd >= 0) {
        _notifier = std::make_unique<QSocketNotifier>(_pidfd, QSocketNotifier::Read);
        connect(_notifier.get(), &QSocketNotifier::activated, this, &Process::_look);
    } else {
        connect(&_timer, &QTimer::timeout, this, &Process::_look);
        _timer.start(250);
    }
}

Process::~Process()
{
    // First, as the number may be another file's the moment it is closed.
    _notifier.reset();
    if (_pidfd >= 0)
        close(_pidfd);
}

void Process::terminate()
{
    _terminated = true;
#ifdef SYS_pidfd_send_signal
    if (_pidfd >= 0) {
        syscall(SYS_pidfd_send_signal, _pidfd, SIGTERM, nullptr, 0);
        return;
    }
#endif
    kill(static_cast<pid_t>(_pid), SIGTERM);
}

void Process::_look()
{
    const auto pid = static_cast<pid_t>(_pid);
    int status = 0;
    const pid_t reaped = waitpid(pid, &status, WNOHANG);
    const bool isNoChild = reaped < 0;
    if (reaped == 0 || (isNoChild && _pidfd < 0 && kill(pid, 0) == 0))
        return;
    if (_notifier)
        _notifier->setEnabled(false);
    _timer.stop();
    Q_EMIT ended(reaped == pid && !_terminated ? errorText(status) : QString());
}

} // namespace quorvane
