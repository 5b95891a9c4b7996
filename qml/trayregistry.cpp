#include "trayregistry.h"

#include "asynccall.h"
#include "traywatcher.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QRegularExpression>

#include <algorithm>

namespace {

// The bus name of the registry and its interface, which are one text.
QString registryName()
{
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString registryPath()
{
    return QStringLiteral("/StatusNotifierWatcher");
}

// What registries look for among hosts; each tray of a process has one.
QString newHostName()
{
    static int last = 0;
    return QStringLiteral("org.kde.StatusNotifierHost-%1-%2")
            .arg(QCoreApplication::applicationPid())
            .arg(++last);
}

QDBusPendingCall requestName(const QString &name)
{
    // Who waits in the bus's queue takes over without a gap, in which items see that they have to
    // register again.
    constexpr uint doNotQueue = 4;
    return callBus(QStringLiteral("RequestName"), { name, doNotQueue });
}

bool isNameOurs(const QDBusMessage &answer)
{
    constexpr uint primaryOwner = 1;
    constexpr uint alreadyOwner = 4;
    const uint result = answer.arguments().value(0).toUInt();
    return answer.type() == QDBusMessage::ReplyMessage
           && (result == primaryOwner || result == alreadyOwner);
}

} // namespace

TrayRegistry::TrayRegistry(QObject *parent)
    : QObject(parent)
    , _hostName(newHostName())
    , _registryOwner(registryName(), QDBusConnection::sessionBus(),
                     QDBusServiceWatcher::WatchForOwnerChange)
    , _itemOwners(QString(), QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&_registryOwner, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) { _follow(owner); });
    connect(&_itemOwners, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &service, const QString &before) {
                if (!before.isEmpty())
                    _removeService(service);
            });
    // From whoever keeps the registry: a subscription by its name would wait for the bus.
    QDBusConnection::sessionBus().connect(QString(), registryPath(), registryName(), QString(),
                                          this, SLOT(_hearRegistry(QDBusMessage)));
    requestName(_hostName);
    whenOwnerKnown(registryName(), this, [this](const QString &owner) { _follow(owner); });
}

TrayRegistry::~TrayRegistry()
{
    callBus(QStringLiteral("ReleaseName"), { _hostName });
    if (_watcher)
        callBus(QStringLiteral("ReleaseName"), { registryName() });
}

void TrayRegistry::_follow(const QString &owner)
{
    _owner = owner;
    _setRegistered(false);
    _setOwnerProcess({});
    if (owner.isEmpty()) {
        _keepRegistry();
    } else if (owner == QDBusConnection::sessionBus().baseService()) {
        _keepRegistry();
        _register();
    } else {
        _watcher.reset();
        _register();
        _askForProcess();
    }
}

// Items that register only once are taken over from the registry before.
void TrayRegistry::_keepRegistry()
{
    auto watcher = std::make_unique<TrayWatcher>();
    // Not while this or another tray of this process does.
    if (!QDBusConnection::sessionBus().registerObject(registryPath(), watcher.get()))
        return;
    for (const TrayAddress &item : qAsConst(_items))
        watcher->add(item);
    _watcher = std::move(watcher);
    whenAnswered(requestName(registryName()), this, [this](const QDBusMessage &answer) {
        if (isNameOurs(answer))
            _findItems();
        else
            _watcher.reset();
    });
}

// Most items register again with a new registry. Those that don't are known by their names.
void TrayRegistry::_findItems()
{
    whenAnswered(callBus(QStringLiteral("ListNames")), this, [this](const QDBusMessage &answer) {
        static const QRegularExpression itemName(
                QStringLiteral("^org\\.(quorvane\\..+|kde\\.StatusNotifierItem)-\\d+(-\\d+)?\\z"));
        const QStringList names = answer.arguments().value(0).toStringList().filter(itemName);
        for (const QString &name : names) {
            if (_watcher)
                _watcher->add(TrayAddress::fromText(name));
        }
    });
}

// As a host. Subscribed to its signals already, no item is missed that comes while the list is read.
void TrayRegistry::_register()
{
    const QString owner = _owner;
    callAsync(owner, registryPath(), registryName(), QStringLiteral("RegisterStatusNotifierHost"),
              { _hostName });
    const QVariantList property { registryName(), QStringLiteral("RegisteredStatusNotifierItems") };
    whenAnswered(callAsync(owner, registryPath(), QStringLiteral("org.freedesktop.DBus.Properties"),
                           QStringLiteral("Get"), property),
                 this, [this, owner](const QDBusMessage &answer) {
                     if (owner != _owner || answer.type() != QDBusMessage::ReplyMessage)
                         return;
                     const QVariant value
                             = answer.arguments().value(0).value<QDBusVariant>().variant();
                     const QStringList items = value.toStringList();
                     for (const QString &item : items)
                         _add(TrayAddress::fromText(item));
                     _setRegistered(true);
                 });
}

void TrayRegistry::_askForProcess()
{
    whenProcessKnown(_owner, this, [this, owner = _owner](const QVariantMap &process) {
        if (owner == _owner)
            _setOwnerProcess(process);
    });
}

void TrayRegistry::_hearRegistry(const QDBusMessage &signal)
{
    if (signal.service() != _owner)
        return;
    const TrayAddress item = TrayAddress::fromText(signal.arguments().value(0).toString());
    if (signal.member() == QLatin1String("StatusNotifierItemRegistered"))
        _add(item);
    else if (signal.member() == QLatin1String("StatusNotifierItemUnregistered"))
        _remove(item);
}

void TrayRegistry::_add(const TrayAddress &item)
{
    // More than anyone looks at: a registry that names more is broken or hostile.
    constexpr int maximalItems = 500;
    if (!item.isValid())
        return;
    if (!_items.contains(item)) {
        if (_items.size() == maximalItems)
            return;
        _items.append(item);
        _itemOwners.addWatchedService(item.service);
    }
    Q_EMIT itemRegistered(item);
}

void TrayRegistry::_remove(const TrayAddress &item)
{
    if (!_items.removeOne(item))
        return;
    const auto isOfService
            = [&item](const TrayAddress &other) { return other.service == item.service; };
    if (std::none_of(_items.cbegin(), _items.cend(), isOfService))
        _itemOwners.removeWatchedService(item.service);
    Q_EMIT itemUnregistered(item);
}

void TrayRegistry::_removeService(const QString &service)
{
    const QVector<TrayAddress> items = _items;
    for (const TrayAddress &item : items) {
        if (item.service == service)
            _remove(item);
    }
}

void TrayRegistry::_setRegistered(bool registered)
{
    if (registered == _registered)
        return;
    _registered = registered;
    Q_EMIT registeredChanged();
}

void TrayRegistry::_setOwnerProcess(const QVariantMap &process)
{
    if (process == _ownerProcess)
        return;
    _ownerProcess = process;
    Q_EMIT ownerChanged();
}
