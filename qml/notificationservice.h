#pragma once

#include <quorvane/notifications/notificationserver.h>

class Notifications;

// What programs see of Notifications as "org.freedesktop.Notifications".
class NotificationService : public XdgNotificationServer
{
    Q_OBJECT

public:
    explicit NotificationService(Notifications *notifications);

    QStringList GetCapabilities() override;
    // Tells of the shell: its application name, organization and version, where it has set them.
    QString GetServerInformation(QString &vendor, QString &version, QString &spec_version) override;
    uint Notify(const QString &app_name, uint replaces_id, const QString &app_icon,
                const QString &summary, const QString &body, const QStringList &actions,
                const QVariantMap &hints, int timeout) override;

private:
    Notifications *const _notifications;
};
