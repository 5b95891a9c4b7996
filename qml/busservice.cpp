#include "busservice.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QFile>

namespace {

QDBusMessage busCall(const QString &method, const QVariantList &arguments)
{
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage call = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"),
                                                       bus, method);
    call.setArguments(arguments);
    return call;
}

// Asks the bus, and hands on what it answers; an error is the empty value.
template<typename Value, typename Function>
void ask(QObject *context, const QString &method, const QString &argument, Function then)
{
    const auto call = QDBusConnection::sessionBus().asyncCall(busCall(method, { argument }));
    auto *watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, then] {
        watcher->deleteLater();
        then(QDBusPendingReply<Value>(*watcher).value());
    });
}

QString programName(uint pid)
{
    QFile file(QStringLiteral("/proc/%1/comm").arg(pid));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

} // namespace

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
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterObject(_path);
    bus.send(busCall(QStringLiteral("ReleaseName"), { _name }));
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
        bus.send(busCall(QStringLiteral("RequestName"), { _name, 0U }));
    }
    // The bus answers in order, so this is the owner after the request.
    ask<QString>(this, QStringLiteral("GetNameOwner"), _name,
                 [this](const QString &owner) { _setOwner(owner); });
}

void BusService::_setOwner(const QString &owner)
{
    if (owner == _owner)
        return;
    _owner = owner;
    _process.clear();
    Q_EMIT changed();
    if (owner.isEmpty() || isRegistered())
        return;
    ask<uint>(this, QStringLiteral("GetConnectionUnixProcessID"), owner, [this, owner](uint pid) {
        if (owner != _owner || pid == 0)
            return;
        _process = { { QStringLiteral("name"), programName(pid) }, { QStringLiteral("pid"), pid } };
        Q_EMIT changed();
    });
}
