#include "notificationservice_p.h"

#include "notificationadaptor_p.h"
#include "pendingnotifications_p.h"

#include <quorvaneshell/bus/busreader_p.h>
#include <quorvaneshell/bus/busservice_p.h>

#include <QPointer>

#include <utility>

namespace quorvane {

QSharedPointer<NotificationService> NotificationService::shared()
{
    static QWeakPointer<NotificationService> made;
    QSharedPointer<NotificationService> service = made.toStrongRef();
    if (!service) {
        service.reset(new NotificationService);
        made = service;
    }
    return service;
}

NotificationService::NotificationService()
    : _capabilities({ QStringLiteral("actions"), QStringLiteral("body"),
                      QStringLiteral("body-hyperlinks"), QStringLiteral("body-markup"),
                      QStringLiteral("icon-static"), QStringLiteral("persistence") })
{
    keepReadingSessionBus();
    auto *exported = new QObject(this);
    new NotificationAdaptor(this, exported);
    _bus = new BusService(NotificationAdaptor::name(), exported, this);
    connect(_bus, &BusService::changed, this, &NotificationService::registrationChanged);
    connect(&_inhibitions, &NotificationInhibitions::changed, this,
            &NotificationService::_tellOfInhibitions);
    new BusService(QStringLiteral("com.zovar.NotificationManager"),
                   new PendingNotifications(&_list, this), this);
}

NotificationService::~NotificationService() = default;

bool NotificationService::isRegistered() const
{
    return _bus->isRegistered();
}

QVariantMap NotificationService::owner() const
{
    return _bus->owner();
}

void NotificationService::setCapabilities(const QStringList &capabilities)
{
    if (capabilities == _capabilities)
        return;
    _capabilities = capabilities;
    Q_EMIT capabilitiesChanged();
}

void NotificationService::setDefaultTimeout(int milliseconds)
{
    if (milliseconds == _defaultTimeout)
        return;
    _defaultTimeout = milliseconds;
    Q_EMIT defaultTimeoutChanged();
}

void NotificationService::setLimit(int limit)
{
    limit = qMax(1, limit);
    if (limit == _list.limit())
        return;
    const QPointer<NotificationService> alive(this); // Whoever hears may let go of it.
    _list.setLimit(limit);
    if (alive)
        Q_EMIT limitChanged();
}

void NotificationService::setKeepExpired(bool keepExpired)
{
    if (keepExpired == _list.keepsExpired())
        return;
    _list.setKeepsExpired(keepExpired);
    Q_EMIT keepExpiredChanged();
}

void NotificationService::setDoNotDisturb(bool doNotDisturb)
{
    if (std::exchange(_doNotDisturb, doNotDisturb) == doNotDisturb)
        return;
    const QPointer<NotificationService> alive(this);
    Q_EMIT doNotDisturbChanged();
    if (alive)
        _tellWhetherInhibited();
}

void NotificationService::_tellOfInhibitions()
{
    const QPointer<NotificationService> alive(this);
    Q_EMIT inhibitionsChanged();
    if (alive)
        _tellWhetherInhibited();
}

void NotificationService::_tellWhetherInhibited()
{
    const bool inhibited = isInhibited();
    if (std::exchange(_wasInhibited, inhibited) != inhibited)
        Q_EMIT inhibitedChanged();
}

uint NotificationService::post(NotificationPost post)
{
    if (post.timeout < 0)
        post.timeout = _defaultTimeout;
    return _list.post(std::move(post));
}

} // namespace quorvane
