#pragma once

#include "notification_p.h"

#include <QEnableSharedFromThis>
#include <QObject>
#include <QSharedPointer>
#include <QTimer>
#include <QVector>

#include <deque>

namespace quorvane {

class BusService;
class NotificationService;

// The notification service of this process and what is pending: one for all objects that show it,
// which follow rows() and pass its signals on. It is on the bus as long as one of them is there.
//
// Whoever hears of a change may change something, too. It happens at once, and what there is to
// tell of it comes after what is being told, of which some may have gone by then.
class NotificationList
    : public QObject
    , public QEnableSharedFromThis<NotificationList>
{
    Q_OBJECT

public:
    using Row = std::shared_ptr<const Notification>;

    static QSharedPointer<NotificationList> shared();
    ~NotificationList() override;

    // Newest first. One that was changed is another pointer of the same id in the same place.
    QVector<Row> rows() const { return _rows; }

    bool isRegistered() const;
    QVariantMap owner() const;
    int defaultTimeout() const { return _defaultTimeout; }
    void setDefaultTimeout(int milliseconds);
    int limit() const { return _limit; }
    void setLimit(int limit);
    QStringList capabilities() const { return _capabilities; }
    void setCapabilities(const QStringList &capabilities);

    // See Notifications.
    uint post(NotificationPost post);
    void close(uint id, uint reason);
    // As a program asks for it: the number may be one that it thought of itself.
    void closeFor(const QString &sender, uint number);
    void invoke(uint id, const QString &key);
    void clear();
    QList<uint> pending();
    QStringList actionsOf(uint id);

Q_SIGNALS:
    void rowsChanged();
    void posted(uint id);
    void replaced(uint id);
    void closed(uint id, uint reason);

    void registrationChanged();
    void defaultTimeoutChanged();
    void limitChanged();
    void capabilitiesChanged();

private:
    struct Event
    {
        void (NotificationList::*signal)(uint) = nullptr; // Null for closed().
        uint id = 0;
        uint reason = 0;
    };

    NotificationList();

    uint _idFor(const NotificationPost &post);
    int _rowOf(uint id) const;
    Row _read(const NotificationPost &post) const;
    // These change the rows and note what is to be told; _tell() does, and comes last.
    void _show();
    void _remove(int first, int last, uint reason);
    void _closeSurplus();
    void _dropPictures();
    void _tell();

    void _expire();
    void _startTimer();
    void _readPicture();
    void _setPicture(const Row &notification, const QImage &image);

    QVector<Row> _rows;
    std::deque<NotificationPost> _waiting; // Answered and not in the list yet.
    std::deque<Event> _events;
    bool _changed = false;
    bool _telling = false;
    bool _reading = false;
    uint _lastId;
    int _defaultTimeout = 0;
    int _limit = 1000;
    QStringList _capabilities;
    QTimer _timer;
    NotificationService *_service;
    BusService *_bus;
};

} // namespace quorvane
