#pragma once

#include "launch_p.h"

#include <QObject>
#include <QVariantList>

namespace quorvane {

// Launches applications for one model and tells it what fails. What runs is known to all launchers of
// the process, and what one has launched goes on without it.
class ApplicationLauncher : public QObject
{
    Q_OBJECT

public:
    explicit ApplicationLauncher(QObject *parent = nullptr);

    // By the session bus if the application asks for that, or else its program.
    void launch(const ApplicationPointer &application, const QVariantList &urls);
    void launchInTerminal(const ApplicationPointer &application, const QVariantList &urls);
    void invoke(const ApplicationPointer &application, const QString &actionId);

    // Sends SIGTERM to all programs of the application. Their end is no failure.
    void stop(const QString &appId);

    // The process that was launched last, 0 if none runs.
    qint64 pid(const QString &appId) const;

Q_SIGNALS:
    // It can't be launched, or its program ended with an error soon after.
    void failed(const QString &appId, const QString &message);
    // Another process of the application runs, or one less.
    void programsChanged(const QString &appId);

private:
    void _launch(LaunchRequest request, const QVariantList &urls);
    void _startProgram(const LaunchRequest &request);
    void _startByBus(const LaunchRequest &request);
    void _follow(const QString &appId, qint64 pid);
};

} // namespace quorvane
