#pragma once

#include <QDBusArgument>
#include <QVariantMap>

namespace quorvane {

// The hints of a post, a{sv}, of which the first 64 are looked at. Taken from the message are those
// that Notification reads: numbers, texts of at most 1,024 characters, and pictures as QImage (see
// notificationImage()). Whatever else is in there is passed over, whatever its size.
struct NotificationHints
{
    QVariantMap values;
};

QDBusArgument &operator<<(QDBusArgument &argument, const NotificationHints &hints);
const QDBusArgument &operator>>(const QDBusArgument &argument, NotificationHints &hints);

} // namespace quorvane

Q_DECLARE_METATYPE(quorvane::NotificationHints)
