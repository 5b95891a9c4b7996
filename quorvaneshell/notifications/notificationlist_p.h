#pragma once

#include "notification_p.h"
#include "notificationpost_p.h"

#include <QObject>
#include <QTimer>

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

    int limit() const { return _limit; }
    void setLimit(int limit);

    // See Notifications. A time-out below 0 is none.
    uint post(NotificationPost post);
    void close(uint id, uint reason);
    // As a program asks for it: the number may be one that it thought of itself.
    void closeFor(const QString &sender, uint number);
    void invoke(uint id, const QString &action);
    void clear();
    // In ascending order.
    QList<uint> pending();
    // Keys and texts alternating, as they were sent; empty for an unknown id.
    QStringList actionsOf(uint id);

Q_SIGNALS:
    void rowsChanged();
    void posted(uint id);
    void replaced(uint id);
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
    void _closeSurplus();
    void _dropPictures();
    void _tell();

    void _expire();
    void _startTimer();
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
    QTimer _timer;
};

} // namespace quorvane
