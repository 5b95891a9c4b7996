#include "traywatcher.h"

#include "asynccall.h"
#include "traywatcheradaptor.h"

#include <QDBusConnection>

#include <algorithm>

TrayWatcher::TrayWatcher(QObject *parent)
    : QObject(parent)
    , _owners(QString(), QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
{
    new TrayWatcherAdaptor(this);
    for (auto change : { &TrayWatcher::StatusNotifierItemRegistered,
                         &TrayWatcher::StatusNotifierItemUnregistered })
        connect(this, change, this, &TrayWatcher::registeredItemsChanged);
    connect(&_owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &service, const QString &before) {
                if (!before.isEmpty())
                    _drop(service);
            });
}

QStringList TrayWatcher::registeredItems() const
{
    QStringList items;
    for (const Entry &entry : _entries) {
        if (entry.listed)
            items += entry.item.text();
    }
    return items;
}

void TrayWatcher::RegisterStatusNotifierItem(const QString &serviceOrPath)
{
    const QString caller = message().service();
    const TrayAddress item = TrayAddress::fromText(serviceOrPath, caller);
    const auto isOfCaller = [&caller](const Entry &entry) { return entry.caller == caller; };
    constexpr int maximalItemsOfCaller = 64;
    if (!item.isValid()) {
        sendErrorReply(QDBusError::InvalidArgs,
                       QStringLiteral("Neither a bus name nor an object path"));
    } else if (std::count_if(_entries.cbegin(), _entries.cend(), isOfCaller)
               >= maximalItemsOfCaller) {
        sendErrorReply(QDBusError::LimitsExceeded, QStringLiteral("Too many items"));
    } else {
        add(item, caller);
    }
}

void TrayWatcher::RegisterStatusNotifierHost(const QString & /*service*/)
{
    Q_EMIT StatusNotifierHostRegistered();
}

void TrayWatcher::add(const TrayAddress &item, const QString &caller)
{
    if (_find(item) >= 0)
        return;
    _entries.append({ item, caller });
    // Watched first, so that a name which vanishes while the bus is asked is not missed.
    _owners.addWatchedService(item.service);
    whenOwnerKnown(item.service, this, [this, item](const QString &owner) {
        owner.isEmpty() ? _drop(item.service) : _list(item);
    });
}

void TrayWatcher::_list(const TrayAddress &item)
{
    const int index = _find(item);
    if (index < 0 || _entries.at(index).listed)
        return;
    _entries[index].listed = true;
    Q_EMIT StatusNotifierItemRegistered(item.text());
}

// Each item has left the list when it is announced.
void TrayWatcher::_drop(const QString &service)
{
    _owners.removeWatchedService(service);
    for (int i = 0; i < _entries.size();) {
        if (_entries.at(i).item.service != service) {
            ++i;
            continue;
        }
        const Entry entry = _entries.takeAt(i);
        if (entry.listed)
            Q_EMIT StatusNotifierItemUnregistered(entry.item.text());
    }
}

int TrayWatcher::_find(const TrayAddress &item) const
{
    const auto found = std::find_if(_entries.cbegin(), _entries.cend(),
                                    [&item](const Entry &entry) { return entry.item == item; });
    return found == _entries.cend() ? -1 : int(found - _entries.cbegin());
}
