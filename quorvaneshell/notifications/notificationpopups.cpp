#include "notificationpopups.h"

#include "notificationpopups_p.h"

#include <algorithm>
#include <utility>

namespace quorvane {

NotificationPopups::NotificationPopups(QObject *parent)
    : ListModel(parent)
    , _d(std::make_unique<NotificationPopupsPrivate>(this))
{
    const NotificationList *list = _d->list();
    connect(list, &NotificationList::posted, this, [this](uint id) { _d->popUp(id); });
    connect(list, &NotificationList::replaced, this, [this](uint id) { _d->popUp(id); });
    connect(list, &NotificationList::rowsChanged, this, [this] { _d->update(); });
    connect(_d->service.data(), &NotificationService::inhibitedChanged, this,
            [this] { _d->update(); });
    connect(&_d->times, &Countdowns::over, this, [this] { _d->closeOver(); });
}

NotificationPopups::~NotificationPopups() = default;

int NotificationPopups::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_d->rows.rows().size());
}

QVariant NotificationPopups::data(const QModelIndex &index, int role) const
{
    return _d->rows.data(index, role);
}

QHash<int, QByteArray> NotificationPopups::roleNames() const
{
    return NotificationModelRows::roleNames();
}

int NotificationPopups::maximum() const
{
    return _d->maximum;
}

void NotificationPopups::setMaximum(int maximum)
{
    maximum = qMax(1, maximum);
    if (std::exchange(_d->maximum, maximum) == maximum)
        return;
    const QPointer<NotificationPopups> alive(this);
    _d->update();
    if (alive)
        Q_EMIT maximumChanged();
}

int NotificationPopups::duration() const
{
    return _d->duration;
}

void NotificationPopups::setDuration(int milliseconds)
{
    if (std::exchange(_d->duration, milliseconds) != milliseconds)
        Q_EMIT durationChanged();
}

bool NotificationPopups::isHeld() const
{
    return _d->held;
}

void NotificationPopups::setHeld(bool held)
{
    if (_d->held == held)
        return;
    const QPointer<NotificationPopups> alive(this);
    if (held)
        _d->hold();
    else
        _d->release();
    if (alive)
        Q_EMIT heldChanged();
}

bool NotificationPopups::isQuiet() const
{
    return _d->quiet;
}

void NotificationPopups::setQuiet(bool quiet)
{
    if (std::exchange(_d->quiet, quiet) == quiet)
        return;
    const QPointer<NotificationPopups> alive(this);
    _d->update();
    if (alive)
        Q_EMIT quietChanged();
}

bool NotificationPopups::isTransientOnly() const
{
    return _d->transientOnly;
}

void NotificationPopups::setTransientOnly(bool transientOnly)
{
    if (std::exchange(_d->transientOnly, transientOnly) == transientOnly)
        return;
    const QPointer<NotificationPopups> alive(this);
    _d->update();
    if (alive)
        Q_EMIT transientOnlyChanged();
}

int NotificationPopups::indexOf(uint id) const
{
    return _d->rows.indexOf(id);
}

QVariantMap NotificationPopups::find(uint id) const
{
    return get(indexOf(id));
}

void NotificationPopups::close(uint id)
{
    _d->close(id);
}

NotificationPopupsPrivate::NotificationPopupsPrivate(NotificationPopups *model)
    : service(NotificationService::shared())
    , rows(model)
    , _model(model)
{
}

NotificationPopupsPrivate::~NotificationPopupsPrivate()
{
    if (!held)
        return;
    for (const uint id : std::as_const(_ids))
        list()->release(id);
}

void NotificationPopupsPrivate::popUp(uint id)
{
    _fresh.removeOne(id);
    _fresh += id;
    if (std::exchange(_scheduled, true))
        return;
    const auto turn = [this] {
        _scheduled = false;
        update();
    };
    QMetaObject::invokeMethod(_model, turn, Qt::QueuedConnection);
}

void NotificationPopupsPrivate::hold()
{
    held = true;
    for (const uint id : std::as_const(_ids)) {
        times.hold(id);
        list()->hold(id);
    }
}

void NotificationPopupsPrivate::release()
{
    held = false;
    for (const uint id : std::as_const(_ids)) {
        times.release(id);
        list()->release(id);
    }
    update();
}

void NotificationPopupsPrivate::close(uint id)
{
    if (!_ids.contains(id))
        return;
    _drop(id);
    const NotificationRow notification = list()->find(id);
    if (notification && notification->isTransient) {
        _over.removeOne(id);
        list()->close(id, NotificationList::Dismissed); // Updates, too.
    } else {
        update();
    }
}

void NotificationPopupsPrivate::closeOver()
{
    const QSet<uint> ids = times.takeOver();
    for (const uint id : ids)
        _drop(id);
    update();
}

void NotificationPopupsPrivate::update()
{
    const QList<uint> before = _ids;
    for (const uint id : before) {
        const NotificationRow notification = list()->find(id);
        if (!notification || !_mayShow(*notification))
            _drop(id);
    }
    _takeFresh();
    _makeRoom();

    NotificationRows wanted;
    const QList<uint> shown = _ids.mid(0, maximum);
    for (const uint id : shown)
        wanted.push_back(list()->find(id));
    const QPointer<NotificationPopups> alive(_model);
    rows.show(wanted);
    while (alive && !_over.isEmpty()) {
        const NotificationRow notification = list()->find(_over.takeFirst());
        if (notification && notification->isTransient)
            list()->expire(notification->id);
    }
}

bool NotificationPopupsPrivate::_mayShow(const Notification &notification) const
{
    return !notification.expired
           && (!(quiet || service->isInhibited()) || notification.isCritical())
           && (!transientOnly || notification.isTransient);
}

void NotificationPopupsPrivate::_takeFresh()
{
    QList<uint> late;
    const QList<uint> fresh = std::exchange(_fresh, {});
    for (const uint id : fresh) {
        const NotificationRow notification = list()->find(id);
        if (!notification)
            continue;
        if (!_mayShow(*notification)) {
            _over += id;
            continue;
        }
        if (!_ids.contains(id)) {
            if (held && _ids.size() >= maximum) {
                late += id;
                continue;
            }
            _ids.prepend(id);
            if (held) {
                times.hold(id);
                list()->hold(id);
            }
        }
        times.start(id, notification->isCritical() ? 0 : duration);
    }
    _fresh = late;
}

void NotificationPopupsPrivate::_makeRoom()
{
    for (int i = int(_ids.size()) - 1; !held && i >= 0 && _ids.size() > maximum; --i) {
        if (!list()->find(_ids.at(i))->isCritical())
            _drop(_ids.at(i));
    }
}

void NotificationPopupsPrivate::_drop(uint id)
{
    _ids.removeOne(id);
    times.remove(id);
    if (held)
        list()->release(id);
    _over += id;
}

} // namespace quorvane
