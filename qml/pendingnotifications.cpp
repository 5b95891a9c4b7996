#include "pendingnotifications.h"

#include "notifications.h"
#include "pendingnotificationsadaptor.h"

PendingNotifications::PendingNotifications(Notifications *notifications)
    : QObject(notifications)
    , _notifications(notifications)
{
    new PendingNotificationsAdaptor(this);
}

int PendingNotifications::nbNotifications()
{
    return _notifications->pending().size();
}

void PendingNotifications::close(uint id, uint reason)
{
    _notifications->close(id, reason);
}

void PendingNotifications::returnAction(uint appid, const QString &key)
{
    _notifications->invoke(appid, key);
}

QList<uint> PendingNotifications::listPending()
{
    return _notifications->pending();
}

QStringList PendingNotifications::listAction(uint id)
{
    return _notifications->actionsOf(id);
}
