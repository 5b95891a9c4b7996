#include "asynccall.h"

#include <QDBusConnection>

#include <limits>

QDBusPendingCall callAsync(const QString &service, const QString &path, const QString &interface,
                           const QString &method, const QVariantList &arguments)
{
    constexpr int noTimeout = std::numeric_limits<int>::max();
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return QDBusConnection::sessionBus().asyncCall(message, noTimeout);
}

QDBusPendingCall callBus(const QString &method, const QVariantList &arguments)
{
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return callAsync(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method, arguments);
}
