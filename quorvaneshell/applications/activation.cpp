#include "activation_p.h"

#include <quorvaneshell/bus/asynccall_p.h>

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QFileInfo>

#include <limits>

namespace quorvane {

namespace {

QString busName(const Application &application)
{
    return QFileInfo(application.path).completeBaseName();
}

QDBusPendingCall call(const QString &name, const QString &method, const QVariantList &arguments)
{
    constexpr int noTimeout = std::numeric_limits<int>::max();
    QString path = QLatin1Char('/') + name;
    path.replace(QLatin1Char('.'), QLatin1Char('/')).replace(QLatin1Char('-'), QLatin1Char('_'));
    auto message = QDBusMessage::createMethodCall(
            name, path, QStringLiteral("org.freedesktop.Application"), method);
    message.setArguments(arguments + QVariantList { QVariantMap() });
    return QDBusConnection::sessionBus().asyncCall(message, noTimeout);
}

QDBusPendingCall activate(const QString &name, const LaunchRequest &request)
{
    if (!request.action.isEmpty())
        return call(name, QStringLiteral("ActivateAction"), { request.action, QVariantList() });
    if (request.uris.isEmpty())
        return call(name, QStringLiteral("Activate"), {});
    QStringList texts;
    for (const QByteArray &uri : request.uris)
        texts += QString::fromLatin1(uri);
    return call(name, QStringLiteral("Open"), { texts });
}

} // namespace

bool Activation::isFor(const Application &application)
{
    return application.busActivatable && QDBusConnection::sessionBus().isConnected();
}

Activation::Activation(const LaunchRequest &request, QObject *parent)
    : QObject(parent)
    , _name(busName(*request.application))
{
    // With the bus as the service, Qt would ask it for its owner and wait.
    QDBusConnection::sessionBus().connect({}, QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("NameOwnerChanged"), { _name }, {}, this,
                                          SLOT(_ownerChanged(QDBusMessage)));
    whenAnswered(activate(_name, request), this,
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
    if (answer.type() == QDBusMessage::ReplyMessage)
        Q_EMIT succeeded();
    else
        Q_EMIT failed(answer.errorMessage(),
                      answer.errorName() == QDBusError::errorString(QDBusError::ServiceUnknown));
}

} // namespace quorvane
