#pragma once

#include "launch_p.h"

#include <QObject>

class QDBusMessage;

namespace quorvane {

// One activation of an application by the session bus, through the interface
// org.freedesktop.Application. It may take as long as the program likes, and deletes itself then.
class Activation : public QObject
{
    Q_OBJECT

public:
    // Whether the bus starts the application, and not its command line.
    static bool isFor(const Application &application);

    explicit Activation(const LaunchRequest &request, QObject *parent = nullptr);

Q_SIGNALS:
    // The process that owns the name. May come before the program has answered, and again.
    void running(qint64 pid);
    // The program has answered.
    void succeeded();
    // The message is the bus's. Nothing provides a name that is unknown.
    void failed(const QString &message, bool isUnknown);

private Q_SLOTS:
    void _ownerChanged(const QDBusMessage &signal);

private:
    void _askForPid();
    void _answered(const QDBusMessage &answer);

    const QString _name;
    bool _isAnswered = false;
};

} // namespace quorvane
