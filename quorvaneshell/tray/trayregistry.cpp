#include "trayregistry_p.h"

#include "traywatcher_p.h"

#include <quorvaneshell/bus/asynccall_p.h>
#include <quorvaneshell/bus/busreader_p.h>
#include <quorvaneshell/bus/patientcall_p.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QPointer>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace quorvane {

namespace {

// More than anyone looks at.
constexpr int mostListed = 1000;

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
{
    keepReadingSessionBus();
    connect(&_items, &TrayItems::added, this, &TrayRegistry::_tell);
    connect(&_items, &TrayItems::removed, this, &TrayRegistry::_tellOfRemoval);
    connect(&_names, &BusNames::ownerKnown, this,
            [this](const QString &, const QString &owner) { _follow(owner); });
    // From whoever keeps the registry: a subscription by its name would wait for the bus.
    QDBusConnection::sessionBus().connect(QString(), registryPath(), registryName(), QString(),
                                          this, SLOT(_hearRegistry(QDBusMessage)));
    requestName(_hostName);
    _names.follow(registryName());
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
    delete std::exchange(_list, nullptr);
    const bool isOurs = owner == QDBusConnection::sessionBus().baseService();
    if (owner.isEmpty() || isOurs)
        _keepRegistry();
    else
        _watcher.reset();
    if (!owner.isEmpty())
        _register();
    if (!owner.isEmpty() && !isOurs)
        _askForProcess();
    const QPointer<TrayRegistry> self(this);
    _setRegistered(false);
    if (self)
        _setOwnerProcess({});
}

// Items that register only once are taken over from the registry before.
void TrayRegistry::_keepRegistry()
{
    auto watcher = std::make_unique<TrayWatcher>();
    // Not while this or another tray of this process does.
    if (!QDBusConnection::sessionBus().registerObject(registryPath(), watcher.get()))
        return;
    const QVector<TrayAddress> items = _items.items();
    for (const TrayAddress &item : items)
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
        static const QRegularExpression itemName(QStringLiteral(
                "^org\\.(quorvane\\..+|(kde|freedesktop)\\.StatusNotifierItem)-\\d+(-\\d+)?\\z"));
        const QStringList names
                = answer.arguments().value(0).toStringList().filter(itemName).mid(0, mostListed);
        for (const QString &name : names) {
            if (_watcher)
                _watcher->add(TrayAddress::fromText(name));
        }
    });
}

// As a host. Subscribed to its signals already, no item is missed that comes while the list is
// read.
void TrayRegistry::_register()
{
    callAsync(_owner, registryPath(), registryName(), QStringLiteral("RegisterStatusNotifierHost"),
              { _hostName });
    const QVariantList property { registryName(), QStringLiteral("RegisteredStatusNotifierItems") };
    _list = new PatientCall(_owner, registryPath(),
                            QStringLiteral("org.freedesktop.DBus.Properties"),
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
