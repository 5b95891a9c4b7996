#pragma once

#include "countdowns_p.h"
#include "notificationmodelrows_p.h"
#include "notificationservice_p.h"

#include <QList>
#include <QSharedPointer>

namespace quorvane {

class NotificationPopups;

// What pops up, and why.
class NotificationPopupsPrivate
{
public:
    explicit NotificationPopupsPrivate(NotificationPopups *model);
    ~NotificationPopupsPrivate();

    // At the next turn, unless it is closed by then.
    void popUp(uint id);
    void hold();
    void release();
    void close(uint id);
    void closeOver();
    // Takes up what has changed. The model may be gone when this returns.
    void update();

    NotificationList *list() const { return service->list(); }

    const QSharedPointer<NotificationService> service;
    NotificationModelRows rows;
    Countdowns times;
    int maximum = 4;
    int duration = 6000;
    bool held = false;
    bool quiet = false;
    bool transientOnly = false;

private:
    bool _mayShow(const Notification &notification) const;
    void _takeFresh();
    void _makeRoom();
    void _drop(uint id);

    NotificationPopups *const _model;
    QList<uint> _ids;   // Newest first; beyond the maximum those that are critical and wait.
    QList<uint> _fresh; // What is to pop up, the oldest first.
    bool _scheduled = false;
    QList<uint> _over; // Without a pop-up from now on.
};

} // namespace quorvane
