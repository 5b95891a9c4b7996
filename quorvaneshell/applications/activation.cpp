#include "activation_p.h"

#include "launch_p.h"

#include <quorvaneshell/bus/asynccall_p.h>

#include <QDBusConnection>
#include <QDBusError>

namespace quorvane {

Activation::Activation(const ApplicationPointer &application, const QString &action,
                       const QByteArrayList &uris, QObject *parent)
    : QObject(parent)
    , _name(busName(*application))
{
    // With the bus as the service, Qt would ask it for its owner and wait.
    QDBusConnection::sessionBus().connect({}, QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("NameOwnerChanged"), { _name }, {}, this,
                                          SLOT(_ownerChanged(QDBusMessage)));
    whenAnswered(activate(*application, action, uris), this,
                 [this](const QDBusMessage &answer) { _answered(answer); });
    _askForPid();
}

void Activation::_ownerChanged(const QDBusMessage &signal)
{
    if (signal.service() == QLatin1String("org.freedesktop.DBus"))
        _askForPid();
}

void Activation::_askForPid()
{
    whenAnswered(callBus(QStringLiteral("GetConnectionUnixProcessID"), { _name }), this,
                 [this](const QDBusMessage &answer) {
                     if (_isAnswered)
                         deleteLater();
                     if (answer.type() == QDBusMessage::ReplyMessage)
                         Q_EMIT running(answer.arguments().value(0).toUInt());
                 });
}

void Activation::_answered(const QDBusMessage &answer)
{
    _isAnswered = true;
    _askForPid();
    if (answer.type() != QDBusMessage::ReplyMessage)
        Q_EMIT failed(answer.errorMessage(),
                      answer.errorName() == QDBusError::errorString(QDBusError::ServiceUnknown));
}

} // namespace quorvane
