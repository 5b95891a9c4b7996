#include "asynccall_p.h"

#include <QDBusConnection>
#include <QFile>

#include <limits>

namespace quorvane {

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

QString ownerIn(const QDBusMessage &answer)
{
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toString()
                                                       : QString();
}

QVariantMap processIn(const QDBusMessage &answer)
{
    const uint pid = answer.arguments().value(0).toUInt();
    if (answer.type() != QDBusMessage::ReplyMessage || pid == 0)
        return {};
    QFile file(QStringLiteral("/proc/%1/comm").arg(pid));
    const QByteArray name
            = file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    return { { QStringLiteral("name"), QString::fromUtf8(name) }, { QStringLiteral("pid"), pid } };
}

} // namespace quorvane
