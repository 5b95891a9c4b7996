#pragma once

#include "notification_p.h"

#include <quorvaneshell/rows/rowwalk_p.h>

#include <QHash>
#include <QSharedPointer>
#include <QVariant>

#include <functional>

namespace quorvane {

class ApplicationList;

// The rows of a model of notifications, as they were announced, with the roles of Notifications.
class NotificationModelRows
{
public:
    using Wanted = NotificationRows;

    explicit NotificationModelRows(ListModel *model);
    ~NotificationModelRows();

    static QHash<int, QByteArray> roleNames();

    const NotificationRows &rows() const { return _rows; }
    QVariant data(const QModelIndex &index, int role) const;
    // -1 for one that is not there.
    int indexOf(uint id) const;
    // See RowWalk::show(). The model may be gone when this returns.
    void show(const Wanted &wanted);

private:
    friend class RowWalk<NotificationModelRows>;

    static uint _keyOf(const NotificationRow &notification) { return notification->id; }
    static NotificationRow _makeRow(const NotificationRow &notification) { return notification; }
    static void _rowsRemoved(const Wanted &) { }
    template<typename IsCurrent>
    void _updateRows(const Wanted &wanted, const IsCurrent &isCurrent);
    QVector<int> _changedRoles(const Notification &before, const Notification &after) const;
    void _tellOfIcons();

    ListModel *const _model;
    const QSharedPointer<ApplicationList> _applications;
    NotificationRows _rows;
    RowWalk<NotificationModelRows> _walk;
};

} // namespace quorvane
