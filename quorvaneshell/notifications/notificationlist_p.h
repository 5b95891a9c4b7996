#pragma once

#include "countdowns_p.h"
#include "notification_p.h"
#include "notificationpost_p.h"

#include <quorvaneshell/bus/busnames_p.h>

#include <QObject>

#include <deque>

namespace quorvane {

// What is pending: in which order, for how long, and with which pictures.
//
// Whoever hears of a change may change something, too, or delete the list. It happens at once, and
// what there is to tell of it comes after what is being told, of which some may have gone by then.
class NotificationList : public QObject
{
    Q_OBJECT

public:
    // The protocol's reasons; another process may give any number.
    enum Reason : uint { Expired = 1, Dismissed, Closed, Undefined };

    NotificationList();
    ~NotificationList() override;

    const NotificationRows &rows() const { return _rows; }
    // Null for one that is not there.
    NotificationRow find(uint id) const;

    int limit() const { return _limit; }
    void setLimit(int limit);
    bool keepsExpired() const { return _keepsExpired; }
    void setKeepsExpired(bool keepsExpired) { _keepsExpired = keepsExpired; }

    // See Notifications. A time-out below 0 is none.
    uint post(NotificationPost post);
    void close(uint id, uint reason);
    // As a program asks for it: the number may be one that it thought of itself.
    void closeFor(const QString &sender, uint number);
    void invoke(uint id, const QString &action);
    void clear();
    void expire(uint id);
    // Whether it is there to be held.
    bool hold(uint id);
    void release(uint id);
    void markRead(uint id);
    void markAllRead();
    // What has not expired, in ascending order.
    QList<uint> pending();
    // Keys and texts alternating, as they were sent; empty for an unknown id.
    QStringList actionsOf(uint id);

Q_SIGNALS:
    void rowsChanged();
    void posted(uint id);
    void replaced(uint id);
    void expired(uint id);
    void closed(uint id, uint reason);

    // At once, for the program that posted it. Nobody may change anything in there.
    void ended(const QString &sender, uint id, uint reason);
    void invoked(const QString &sender, uint id, const QString &action);

private:
    struct Event
    {
        void (NotificationList::*signal)(uint) = nullptr; // Null for closed().
        uint id = 0;
        uint reason = 0;
    };

    uint _idFor(const NotificationPost &post);
    int _rowOf(uint id) const;
    // These change the rows and note what is to be told; _tell() does, and comes last.
    void _show();
    void _remove(int first, int last, uint reason);
    template<typename Change>
    void _change(int row, const Change &change);
    void _expireRow(int row);
    void _unfollow(const NotificationRow &notification);
    void _forgetActions(const QString &sender);
    void _closeSurplus();
    void _dropPictures();
    void _tell();

    void _expireOver();
    void _readPicture();
    void _setPicture(const NotificationRow &notification, const QImage &image);

    NotificationRows _rows;
    std::deque<NotificationPost> _waiting; // Answered and not in the list yet.
    std::deque<Event> _events;
    bool _changed = false;
    bool _telling = false;
    bool _reading = false;
    uint _lastId;
    int _limit = 1000;
    bool _keepsExpired = false;
    Countdowns _times;
    BusNames _answerers; // Programs whose notifications can be answered although they expired.
};

} // namespace quorvane
