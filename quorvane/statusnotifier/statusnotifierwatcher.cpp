#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include <quorvane/basedir/listtext_p.h>
#include <quorvane/basedir/logging.h>
#include <quorvane/statusnotifier/statusnotifieriteminterface.h>
#include <quorvane/statusnotifier/statusnotifierwatcheradaptor.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusServiceWatcher>
#include <QDebug>

#include <algorithm>

namespace {

QString itemPath()
{
    return QStringLiteral("/StatusNotifierItem");
}

bool isOnBus(const QString &service)
{
    QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
    return bus && bus->isServiceRegistered(service).value();
}

// Names come from strangers. Qt writes the match rule in Latin-1, and over one with a letter outside
// ASCII libdbus ends the process. Such a name never has an owner to lose.
void watch(QDBusServiceWatcher *watcher, const QString &service)
{
    constexpr ushort lastOfAscii = 0x7f;
    const auto isAscii = [](QChar c) { return c.unicode() <= lastOfAscii; };
    if (std::all_of(service.cbegin(), service.cend(), isAscii))
        watcher->addWatchedService(service);
}

// Each entry has left the list when it is announced.
template<typename Announce>
void dropEntries(QStringList &entries, const QString &prefix, Announce announce)
{
    for (int i = 0; i < entries.size();) {
        if (entries.at(i).startsWith(prefix, Qt::CaseSensitive))
            announce(entries.takeAt(i));
        else
            ++i;
    }
}

} // namespace

namespace xdg {

StatusNotifierWatcher::StatusNotifierWatcher(QObject *parent)
    : QObject(parent)
{
    QDBusConnection connection = QDBusConnection::sessionBus();
    if (!connection.isConnected()) {
        qCWarning(SYSTEM_TRAY) << "Cannot connect to the D-Bus session bus.\n"
                               << "Please check your system settings and try again.\n";
    }
    if (!connection.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"))) {
        qCWarning(SYSTEM_TRAY)
                << "Don't register StatusNotifierWatcher service, probably already exists";
        return;
    }
    qCDebug(SYSTEM_TRAY) << "Register StatusNotifierWatcher service";

    new StatusNotifierWatcherAdaptor(this);
    connection.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                              QDBusConnection::ExportAdaptors);

    _serviceWatcher = new QDBusServiceWatcher(this);
    _serviceWatcher->setConnection(QDBusConnection::sessionBus());
    _serviceWatcher->setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(_serviceWatcher, &QDBusServiceWatcher::serviceUnregistered, this,
            &StatusNotifierWatcher::_serviceUnregistered);
}

StatusNotifierWatcher::~StatusNotifierWatcher() = default;

QStringList StatusNotifierWatcher::RegisteredStatusNotifierItems() const
{
    return _registeredItems;
}

bool StatusNotifierWatcher::IsStatusNotifierHostRegistered() const
{
    return !_hostServices.isEmpty();
}

int StatusNotifierWatcher::ProtocolVersion() const
{
    return 1;
}

void StatusNotifierWatcher::RegisterStatusNotifierItem(const QString &service)
{
    qCDebug(SYSTEM_TRAY) << "Watcher: RegisterStatusNotifierItem(" << service << ")";
    const QString id = service + itemPath();
    if (_registeredItems.contains(id, Qt::CaseSensitive) || !_serviceWatcher)
        return;

    // Watched first, so that a name which vanishes while the bus is asked is not missed.
    watch(_serviceWatcher, service);
    if (!isOnBus(service)) {
        _serviceWatcher->removeWatchedService(service);
        return;
    }
    const OrgKdeStatusNotifierItemInterface item(service, itemPath(), QDBusConnection::sessionBus());
    if (!item.isValid()) {
        _serviceWatcher->removeWatchedService(service);
        return;
    }
    qDebug() << "Registering" << id << "to system tray";
    _registeredItems.append(id);
    Q_EMIT StatusNotifierItemRegistered(id);
}

void StatusNotifierWatcher::RegisterStatusNotifierHost(const QString &service)
{
    qCDebug(SYSTEM_TRAY) << "Watcher: RegisterStatusNotifierHost(" << service << ")";
    if (_hostServices.contains(service, Qt::CaseSensitive) || !_serviceWatcher)
        return;

    watch(_serviceWatcher, service);
    _hostServices.append(service);
}

void StatusNotifierWatcher::_serviceUnregistered(QString name)
{
    qCDebug(SYSTEM_TRAY) << "Service " << name
                         << "unregistered (ITEMS:" << ListText { _registeredItems }
                         << " HOSTS:" << ListText { _hostServices } << ")";
    if (!_serviceWatcher)
        return;
    _serviceWatcher->removeWatchedService(name);

    // A host is listed without a path, so its plain name never has this prefix: it stays listed,
    // and IsStatusNotifierHostRegistered stays true. That is intended.
    const QString prefix = name + QLatin1Char('/');
    dropEntries(_registeredItems, prefix,
                [this](const QString &id) { Q_EMIT StatusNotifierItemUnregistered(id); });
    dropEntries(_hostServices, prefix,
                [this](const QString &) { Q_EMIT StatusNotifierHostUnregistered(); });
}

} // namespace xdg
