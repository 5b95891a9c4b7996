#include "notifications.h"

#include "notifications_p.h"

#include <algorithm>
#include <utility>

namespace quorvane {

Notifications::Notifications(QObject *parent)
    : ListModel(parent)
    , _d(std::make_unique<NotificationsPrivate>(this))
{
    qRegisterMetaType<CloseReason>(); // For connections by name, in Qt 5.
    const NotificationService *service = _d->service.data();
    connect(service, &NotificationService::registrationChanged, this,
            &Notifications::registeredChanged);
    connect(service, &NotificationService::registrationChanged, this, &Notifications::ownerChanged);
    connect(service, &NotificationService::defaultTimeoutChanged, this,
            &Notifications::defaultTimeoutChanged);
    connect(service, &NotificationService::limitChanged, this, &Notifications::limitChanged);
    connect(service, &NotificationService::keepExpiredChanged, this,
            &Notifications::keepExpiredChanged);
    connect(service, &NotificationService::doNotDisturbChanged, this,
            &Notifications::doNotDisturbChanged);
    connect(service, &NotificationService::inhibitionsChanged, this,
            &Notifications::inhibitionsChanged);
    connect(service, &NotificationService::inhibitedChanged, this, &Notifications::inhibitedChanged);
    connect(service, &NotificationService::capabilitiesChanged, this,
            &Notifications::capabilitiesChanged);

    const NotificationList *list = _d->list();
    connect(list, &NotificationList::rowsChanged, this, [this] { _d->follow(); });
    // Whoever was told before may have closed it.
    connect(list, &NotificationList::posted, this, [this](uint id) {
        if (indexOf(id) >= 0)
            Q_EMIT posted(id);
    });
    connect(list, &NotificationList::replaced, this, [this](uint id) {
        if (indexOf(id) >= 0)
            Q_EMIT replaced(id);
    });
    connect(list, &NotificationList::expired, this, [this](uint id) {
        if (indexOf(id) >= 0)
            Q_EMIT expired(id);
    });
    connect(list, &NotificationList::closed, this, [this](uint id, uint reason) {
        _d->forget(id);
        Q_EMIT closed(id, CloseReason(reason));
    });
    _d->follow();
}

Notifications::~Notifications() = default;

int Notifications::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_d->rows.rows().size());
}

QVariant Notifications::data(const QModelIndex &index, int role) const
{
    return _d->rows.data(index, role);
}

QHash<int, QByteArray> Notifications::roleNames() const
{
    return NotificationModelRows::roleNames();
}

bool Notifications::isRegistered() const
{
    return _d->service->isRegistered();
}

QVariantMap Notifications::owner() const
{
    return _d->service->owner();
}

int Notifications::defaultTimeout() const
{
    return _d->service->defaultTimeout();
}

void Notifications::setDefaultTimeout(int milliseconds)
{
    _d->service->setDefaultTimeout(milliseconds);
}

int Notifications::limit() const
{
    return _d->service->limit();
}

void Notifications::setLimit(int limit)
{
    _d->service->setLimit(limit);
}

bool Notifications::keepExpired() const
{
    return _d->list()->keepsExpired();
}

void Notifications::setKeepExpired(bool keepExpired)
{
    _d->service->setKeepExpired(keepExpired);
}

int Notifications::unreadCount() const
{
    return _d->unreadCount();
}

bool Notifications::doNotDisturb() const
{
    return _d->service->doNotDisturb();
}

void Notifications::setDoNotDisturb(bool doNotDisturb)
{
    _d->service->setDoNotDisturb(doNotDisturb);
}

QVariantList Notifications::inhibitions() const
{
    return _d->service->inhibitions()->values();
}

bool Notifications::isInhibited() const
{
    return _d->service->isInhibited();
}

QStringList Notifications::capabilities() const
{
    return _d->service->capabilities();
}

void Notifications::setCapabilities(const QStringList &capabilities)
{
    _d->service->setCapabilities(capabilities);
}

int Notifications::indexOf(uint id) const
{
    return _d->rows.indexOf(id);
}

QVariantMap Notifications::find(uint id) const
{
    return get(indexOf(id));
}

void Notifications::invoke(uint id, const QString &actionId)
{
    _d->list()->invoke(id, actionId);
}

void Notifications::dismiss(uint id)
{
    close(id, Dismissed);
}

void Notifications::clear()
{
    _d->list()->clear();
}

void Notifications::close(uint id, CloseReason reason)
{
    _d->list()->close(id, reason);
}

void Notifications::expire(uint id)
{
    _d->list()->expire(id);
}

void Notifications::hold(uint id)
{
    _d->hold(id);
}

void Notifications::release(uint id)
{
    _d->release(id);
}

void Notifications::markRead(uint id)
{
    _d->list()->markRead(id);
}

void Notifications::markAllRead()
{
    _d->list()->markAllRead();
}

NotificationsPrivate::NotificationsPrivate(Notifications *model)
    : service(NotificationService::shared())
    , rows(model)
    , _model(model)
{
}

NotificationsPrivate::~NotificationsPrivate()
{
    for (const uint id : std::as_const(_held))
        list()->release(id);
}

void NotificationsPrivate::follow()
{
    const QPointer<Notifications> alive(_model);
    rows.show(list()->rows());
    if (!alive)
        return;
    const int unreadCount = int(std::count_if(rows.rows().begin(), rows.rows().end(),
                                              [](const auto &row) { return row->unread; }));
    if (std::exchange(_unreadCount, unreadCount) != unreadCount)
        Q_EMIT _model->unreadCountChanged();
}

void NotificationsPrivate::hold(uint id)
{
    if (list()->hold(id))
        _held += id;
}

void NotificationsPrivate::forget(uint id)
{
    _held.removeAll(id);
}

void NotificationsPrivate::release(uint id)
{
    if (_held.removeOne(id))
        list()->release(id);
}

} // namespace quorvane
