#pragma once

#include <QLatin1String>

class QDBusConnection;

// Where the notification service lives on the session bus, for the service and for its client.
namespace notificationbus {

constexpr QLatin1String service("org.freedesktop.Notifications");
constexpr QLatin1String path("/org/freedesktop/Notifications");

// The session bus, with a warning if there is no connection to it.
QDBusConnection sessionBus();

} // namespace notificationbus
