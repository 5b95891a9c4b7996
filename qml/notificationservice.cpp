#include "notificationservice.h"

#include "notifications.h"

#include <quorvane/notifications/notificationsadaptor.h>
#include <quorvane/quorvane_version.h>

#include <QGuiApplication>

NotificationService::NotificationService(Notifications *notifications)
    : XdgNotificationServer(notifications)
    , _notifications(notifications)
{
    new NotificationsAdaptor(this);
    connect(this, &XdgNotificationServer::closeNotification, notifications,
            [notifications](uint id) { notifications->close(id, Notifications::Closed); });
}

QStringList NotificationService::GetCapabilities()
{
    return _notifications->capabilities();
}

QString NotificationService::GetServerInformation(QString &vendor, QString &version,
                                                  QString &spec_version)
{
    const auto either = [](const QString &text, const char *otherwise) {
        return text.isEmpty() ? QString::fromLatin1(otherwise) : text;
    };
    vendor = either(QCoreApplication::organizationName(), "ZOVAR");
    version = either(QCoreApplication::applicationVersion(), QUORVANE_VERSION_STRING);
    spec_version = QStringLiteral("1.2");
    return either(QGuiApplication::applicationDisplayName(), "Quorvane");
}

uint NotificationService::Notify(const QString &app_name, uint replaces_id, const QString &app_icon,
                                 const QString &summary, const QString &body,
                                 const QStringList &actions, const QVariantMap &hints, int timeout)
{
    return _notifications->post(
            { app_name, replaces_id, app_icon, summary, body, actions, hints, timeout });
}
