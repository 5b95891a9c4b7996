#pragma once

#include "notificationservice_p.h"

#include <quorvaneshell/rows/rowwalk_p.h>

#include <QSharedPointer>

namespace quorvane {

class ApplicationList;
class Notifications;

// The rows of a Notifications, as they were announced: they follow those of the service's list.
class NotificationsPrivate
{
public:
    explicit NotificationsPrivate(Notifications *model);
    ~NotificationsPrivate();

    const NotificationRows &rows() const { return _rows; }
    NotificationList *list() const { return service->list(); }
    void follow();
    int unreadCount() const { return _unreadCount; }
    void hold(uint id);
    void release(uint id);
    // Those without an icon of their own have that of their application.
    void tellOfIcons();

    const QSharedPointer<NotificationService> service;
    const QSharedPointer<ApplicationList> applications;

private:
    friend class RowWalk<NotificationsPrivate>;
    using Wanted = NotificationRows;

    static uint _keyOf(const NotificationRow &notification) { return notification->id; }
    static NotificationRow _makeRow(const NotificationRow &notification) { return notification; }
    void _rowsRemoved(const Wanted &rows);
    template<typename IsCurrent>
    void _updateRows(const Wanted &wanted, const IsCurrent &isCurrent);
    QVector<int> _changedRoles(const Notification &before, const Notification &after) const;

    Notifications *const _model;
    NotificationRows _rows;
    RowWalk<NotificationsPrivate> _walk;
    int _unreadCount = 0;
    QList<uint> _held; // Once for each time.
};

} // namespace quorvane
