#include <quorvane/notifications/notificationserver.h>

#include <quorvane/basedir/listtext_p.h>
#include <quorvane/notifications/notificationbus_p.h>

#include <QDBusConnection>
#include <QDebug>

XdgNotificationServer::XdgNotificationServer(QObject *parent)
    : QObject(parent)
{
}

void XdgNotificationServer::RegisterServerToDbus(XdgNotificationServer &server)
{
    // Without a bus both registrations fail, and the second one says so.
    QDBusConnection bus = notificationbus::sessionBus();
    bus.registerObject(notificationbus::path(), &server, QDBusConnection::ExportAdaptors);
    const QString name = notificationbus::service();
    if (!bus.registerService(name))
        qWarning() << "Can't register dbus service " << name;
}

void XdgNotificationServer::setNotify(NotifyFunction *notify, QObject *context)
{
    _notify = notify;
    _context = context;
}

void XdgNotificationServer::sendActionInvoked(uint id, const QString &action_key)
{
    Q_EMIT ActionInvoked(id, action_key);
}

void XdgNotificationServer::sendNotificationClosed(uint id, uint reason)
{
    Q_EMIT NotificationClosed(id, reason);
}

void XdgNotificationServer::CloseNotification(uint id)
{
    Q_EMIT closeNotification(id);
}

QStringList XdgNotificationServer::GetCapabilities()
{
    return {};
}

QString XdgNotificationServer::GetServerInformation(QString &vendor, QString &version,
                                                    QString &spec_version)
{
    vendor = QStringLiteral("ZOVAR");
    version = QStringLiteral("1.0.0");
    spec_version = QStringLiteral("1.2");
    // The service has no name to tell: peers read an empty string.
    return {};
}

uint XdgNotificationServer::Notify(const QString &app_name, uint replaces_id,
                                   const QString &app_icon, const QString &summary,
                                   const QString &body, const QStringList &actions,
                                   const QVariantMap &hints, int timeout)
{
    if (_notify) {
        return _notify(_context, app_name, replaces_id, app_icon, summary, body, actions, hints,
                       timeout);
    }
    qDebug() << "XdgNotificationServer::Notify(" << app_name << ", " << replaces_id << ", "
             << app_icon << ", " << summary << ", " << body << ", " << xdg::ListText { actions }
             << ", " << hints << ", " << timeout << ")";
    return 0;
}
