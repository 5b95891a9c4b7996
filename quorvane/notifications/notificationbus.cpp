#include <quorvane/notifications/notificationbus_p.h>

#include <QDBusConnection>
#include <QDebug>

QDBusConnection notificationbus::sessionBus()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qWarning("Cannot connect to the D-Bus session bus.\n"
                 "Please check your system settings and try again.\n");
    }
    return bus;
}
