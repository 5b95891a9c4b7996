#include "busservice_p.h"

#include "asynccall_p.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QPointer>

namespace quorvane {

BusService::BusService(const QString &name, QObject *object, QObject *parent)
    : QObject(parent)
    , _name(name)
    , _path(QLatin1Char('/') + QString(name).replace(QLatin1Char('.'), QLatin1Char('/')))
    , _object(object)
{
    auto *watcher = new QDBusServiceWatcher(name, QDBusConnection::sessionBus(),
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &BusService::_claim);
    _claim();
}

BusService::~BusService()
{
    if (!_exported)
        return;
    QDBusConnection::sessionBus().unregisterObject(_path);
    callBus(QStringLiteral("ReleaseName"), { _name });
}

bool BusService::isRegistered() const
{
    return _exported && !_owner.isEmpty() && _owner == QDBusConnection::sessionBus().baseService();
}

QVariantMap BusService::owner() const
{
    return _process;
}

void BusService::_claim()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!_exported && bus.registerObject(_path, _object, QDBusConnection::ExportAdaptors)) {
        _exported = true;
        callBus(QStringLiteral("RequestName"), { _name, 0U });
    }
    // The bus answers in order, so this is the owner after the request.
    whenOwnerKnown(_name, this, [this](const QString &owner) { _setOwner(owner); });
}

void BusService::_setOwner(const QString &owner)
{
    if (owner == _owner)
        return;
    _owner = owner;
    _process.clear();
    const QPointer<BusService> alive(this);
    Q_EMIT changed();
    if (!alive || owner != _owner || owner.isEmpty() || isRegistered())
        return;
    whenProcessKnown(owner, this, [this, owner](const QVariantMap &process) {
        if (owner != _owner || process.isEmpty())
            return;
        _process = process;
        Q_EMIT changed();
    });
}

} // namespace quorvane
