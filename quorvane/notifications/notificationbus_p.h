#pragma once

#include <QString>

class QDBusConnection;

// Where the notification service lives on the session bus, for the service and for its client.
namespace notificationbus {

inline QString service()
{
    return QStringLiteral("org.freedesktop.Notifications");
}

inline QString path()
{
    return QStringLiteral("/org/freedesktop/Notifications");
}

// The session bus, with a warning if there is no connection to it.
QDBusConnection sessionBus();

} // namespace notificationbus
