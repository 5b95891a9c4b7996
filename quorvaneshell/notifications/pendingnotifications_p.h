#pragma once

#include <QObject>
#include <QStringList>

namespace quorvane {

class NotificationList;

// What other processes see of a NotificationList as "com.zovar.NotificationManager": what is
// pending, by which they answer and close it.
class PendingNotifications : public QObject
{
    Q_OBJECT

public:
    PendingNotifications(NotificationList *list, QObject *parent);

    int nbNotifications();
    // Without a reason it is the user's.
    void close(uint id, uint reason = 2);
    // As NotificationList::invoke(): a resident one stays.
    void returnAction(uint appid, const QString &key);
    QList<uint> listPending();
    QStringList listAction(uint id);

private:
    NotificationList *const _list;
};

} // namespace quorvane
