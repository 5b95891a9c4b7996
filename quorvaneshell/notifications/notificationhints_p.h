#pragma once

#include <QDBusArgument>
#include <QImage>
#include <QVariantMap>

namespace quorvane {

// The hints of a post, a{sv}, of which the first 64 are looked at. Taken from the message are those
// that Notification reads: numbers, texts of at most 1,024 characters, and pictures as QImage (see
// notificationImage()). Whatever else is in there is passed over, whatever its size.
//
// Hints are what the sender put there, of whatever type: one of a wrong type counts as missing.
struct NotificationHints
{
    QString text(const QString &name) const;
    double number(const QString &name, double otherwise) const;
    bool flag(const QString &name) const { return number(name, 0) != 0; }
    QImage image(const QString &name) const;

    QVariantMap values;
};

QDBusArgument &operator<<(QDBusArgument &argument, const NotificationHints &hints);
const QDBusArgument &operator>>(const QDBusArgument &argument, NotificationHints &hints);

} // namespace quorvane

Q_DECLARE_METATYPE(quorvane::NotificationHints)
