#pragma once

#include <QObject>
#include <QStringList>

class Notifications;

// What other processes see of Notifications as "com.zovar.NotificationManager": what is pending, by
// which they answer and close it.
class PendingNotifications : public QObject
{
    Q_OBJECT

public:
    explicit PendingNotifications(Notifications *notifications);

    int nbNotifications();
    // Reason 2 is the user's.
    void close(uint id, uint reason = 2);
    // As Notifications::invoke(): a resident one stays.
    void returnAction(uint appid, const QString &key);
    QList<uint> listPending();
    QStringList listAction(uint id);

private:
    Notifications *const _notifications;
};
