#include "trayregistry_p.h"

#include <quorvaneshell/bus/asynccall_p.h>
#include <quorvaneshell/bus/busreader_p.h>
#include <quorvaneshell/bus/patientcall_p.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QPointer>
#include <QSet>

#include <algorithm>

namespace quorvane {

namespace {

// What registries look for among hosts; each tray of a process has one.
QString newHostName()
{
    static int last = 0;
    return QStringLiteral("org.kde.StatusNotifierHost-%1-%2")
            .arg(QCoreApplication::applicationPid())
            .arg(++last);
}

} // namespace

TrayRegistry::TrayRegistry()
    : _hostName(newHostName())
{
    keepReadingSessionBus();
    connect(&_items, &TrayItems::added, this, &TrayRegistry::_tell);
    connect(&_items, &TrayItems::removed, this, &TrayRegistry::_tellOfRemoval);
    connect(&_names, &BusNames::ownerKnown, this,
            [this](const QString &, const QString &owner) { _follow(owner); });
    // From whoever keeps the registry: a subscription by its name would wait for the bus.
    QDBusConnection::sessionBus().connect(QString(), path(), busName(), QString(), this,
                                          SLOT(_hearRegistry(QDBusMessage)));
    requestName(_hostName);
    _names.follow(busName());
}

TrayRegistry::~TrayRegistry()
{
    callBus(QStringLiteral("ReleaseName"), { _hostName });
}

QString TrayRegistry::busName()
{
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString TrayRegistry::path()
{
    return QStringLiteral("/StatusNotifierWatcher");
}

// Who waits in the bus's queue takes over without a gap, in which items see that they have to
// register again.
QDBusPendingCall TrayRegistry::requestName(const QString &name)
{
    constexpr uint doNotQueue = 4;
    return callBus(QStringLiteral("RequestName"), { name, doNotQueue });
}

void TrayRegistry::_follow(const QString &owner)
{
    _owner = owner;
    delete std::exchange(_list, nullptr);
    const bool isOurs = owner == QDBusConnection::sessionBus().baseService();
    if (!owner.isEmpty())
        _register();
    if (!owner.isEmpty() && !isOurs)
        _askForProcess();
    const QPointer<TrayRegistry> self(this);
    _setRegistered(false);
    if (self)
        _setOwnerProcess({});
}

// As a host. Subscribed to its signals already, no item is missed that comes while the list is
// read.
void TrayRegistry::_register()
{
    callAsync(_owner, path(), busName(), QStringLiteral("RegisterStatusNotifierHost"),
              { _hostName });
    const QVariantList property { busName(), QStringLiteral("RegisteredStatusNotifierItems") };
    _list = new PatientCall(_owner, path(), QStringLiteral("org.freedesktop.DBus.Properties"),
                            QStringLiteral("Get"), property, this);
    connect(_list, &PatientCall::answered, this, [this](const QDBusMessage &answer) {
        if (answer.type() != QDBusMessage::ReplyMessage)
            return;
        const QVariant value = answer.arguments().value(0).value<QDBusVariant>().variant();
        _takeItems(value.toStringList());
    });
    _list->ask();
}

// A registry may list what has long gone: only names that are there are asked about one by one.
void TrayRegistry::_takeItems(const QStringList &items)
{
    const QStringList texts = items.mid(0, mostListed);
    whenAnswered(callBus(QStringLiteral("ListNames")), this,
                 [this, texts, owner = _owner](const QDBusMessage &answer) {
                     if (owner != _owner)
                         return;
                     const QStringList list = answer.arguments().value(0).toStringList();
                     const QSet<QString> names(list.cbegin(), list.cend());
                     const QPointer<TrayRegistry> self(this);
                     for (const QString &text : texts) {
                         const TrayAddress item = TrayAddress::fromText(text);
                         if (self && names.contains(item.service))
                             _add(item);
                     }
                     if (self)
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
        _items.remove(item);
}

void TrayRegistry::_add(const TrayAddress &item)
{
    if (_items.contains(item))
        _tell(item);
    else
        _items.add(item);
}

void TrayRegistry::_tell(const TrayAddress &address)
{
    const QString owner = _items.owner(address);
    const auto known = std::find_if(_told.cbegin(), _told.cend(), [&](const Item &item) {
        return item.owner == owner && item.address.path == address.path;
    });
    // Under another name it is the same item.
    const TrayAddress toldAs = known == _told.cend() ? address : known->address;
    if (known == _told.cend())
        _told.append({ address, owner });
    Q_EMIT itemRegistered(toldAs, owner);
}

void TrayRegistry::_tellOfRemoval(const TrayAddress &address)
{
    const auto told = std::find_if(_told.cbegin(), _told.cend(), [&address](const Item &item) {
        return item.address == address;
    });
    if (told == _told.cend())
        return;
    const Item item { told->address, told->owner };
    _told.erase(_told.begin() + (told - _told.cbegin()));
    const QPointer<TrayRegistry> self(this);
    Q_EMIT itemUnregistered(address);
    const QVector<TrayAddress> left = self ? _items.items() : QVector<TrayAddress>();
    const auto other = std::find_if(left.cbegin(), left.cend(), [&](const TrayAddress &each) {
        return each.path == address.path && _items.owner(each) == item.owner;
    });
    if (other != left.cend())
        _tell(*other); // It has another name still.
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

} // namespace quorvane
