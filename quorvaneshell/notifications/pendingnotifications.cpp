#include "pendingnotifications_p.h"

#include "notificationlist_p.h"
#include "quorvaneshell/notifications/pendingnotificationsadaptor.h"

namespace quorvane {

PendingNotifications::PendingNotifications(NotificationList *list, QObject *parent)
    : QObject(parent)
    , _list(list)
{
    new PendingNotificationsAdaptor(this);
}

int PendingNotifications::nbNotifications()
{
    return int(_list->pending().size());
}

void PendingNotifications::close(uint id, uint reason)
{
    _list->close(id, reason);
}

void PendingNotifications::returnAction(uint appid, const QString &key)
{
    _list->invoke(appid, key);
}

QList<uint> PendingNotifications::listPending()
{
    return _list->pending();
}

QStringList PendingNotifications::listAction(uint id)
{
    return _list->actionsOf(id);
}

} // namespace quorvane
