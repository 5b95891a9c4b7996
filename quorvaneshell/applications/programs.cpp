#include "programs_p.h"

#include "process_p.h"

#include <QCoreApplication>
#include <QPointer>

namespace quorvane {

Programs *Programs::instance()
{
    static QPointer<Programs> programs;
    if (!programs)
        programs = new Programs(QCoreApplication::instance());
    return programs;
}

Process *Programs::add(const QString &appId, qint64 pid)
{
    const QList<Process *> running = _processes.values(appId);
    for (Process *process : running) {
        if (process->pid() == pid)
            return process;
    }
    auto *process = new Process(pid, this);
    _processes.insert(appId, process);
    connect(process, &Process::ended, this, [this, appId, process] {
        _processes.remove(appId, process);
        process->deleteLater();
        Q_EMIT changed(appId);
    });
    Q_EMIT changed(appId);
    return process;
}

qint64 Programs::pid(const QString &appId) const
{
    const Process *process = _processes.value(appId);
    return process ? process->pid() : 0;
}

void Programs::stop(const QString &appId)
{
    const QList<Process *> running = _processes.values(appId);
    for (Process *process : running)
        process->terminate();
}

} // namespace quorvane
