#pragma once

#include "notificationmodelrows_p.h"
#include "notificationservice_p.h"

#include <QSharedPointer>

namespace quorvane {

class Notifications;

// What a Notifications has of the service's list.
class NotificationsPrivate
{
public:
    explicit NotificationsPrivate(Notifications *model);
    ~NotificationsPrivate();

    NotificationList *list() const { return service->list(); }
    void follow();
    int unreadCount() const { return _unreadCount; }
    void hold(uint id);
    void release(uint id);
    // It is closed, and so not held any more.
    void forget(uint id);

    const QSharedPointer<NotificationService> service;
    NotificationModelRows rows;

private:
    Notifications *const _model;
    int _unreadCount = 0;
    QList<uint> _held; // Once for each time.
};

} // namespace quorvane
