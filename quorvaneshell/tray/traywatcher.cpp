#include "traywatcher_p.h"

#include "quorvaneshell/tray/traywatcheradaptor.h"

namespace quorvane {

TrayWatcher::TrayWatcher(QObject *parent)
    : QObject(parent)
{
    new TrayWatcherAdaptor(this);
    for (auto change : { &TrayWatcher::StatusNotifierItemRegistered,
                         &TrayWatcher::StatusNotifierItemUnregistered })
        connect(this, change, this, &TrayWatcher::registeredItemsChanged);
    connect(&_items, &TrayItems::added, this,
            [this](const TrayAddress &item) { Q_EMIT StatusNotifierItemRegistered(item.text()); });
    connect(&_items, &TrayItems::removed, this, [this](const TrayAddress &item) {
        Q_EMIT StatusNotifierItemUnregistered(item.text());
    });
}

QStringList TrayWatcher::registeredItems() const
{
    QStringList items;
    const QVector<TrayAddress> addresses = _items.items();
    for (const TrayAddress &item : addresses)
        items += item.text();
    return items;
}

void TrayWatcher::RegisterStatusNotifierItem(const QString &serviceOrPath)
{
    const QString caller = message().service();
    const TrayAddress item = TrayAddress::fromText(serviceOrPath, caller);
    if (!item.isValid() || item.service == BusNames::ofBus())
        sendErrorReply(QDBusError::InvalidArgs,
                       QStringLiteral("Neither the bus name of an item nor an object path"));
    else if (!_items.hasRoomFor(caller))
        sendErrorReply(QDBusError::LimitsExceeded, QStringLiteral("Too many items"));
    else
        _items.add(item, caller);
}

void TrayWatcher::RegisterStatusNotifierHost(const QString & /*service*/)
{
    Q_EMIT StatusNotifierHostRegistered();
}

} // namespace quorvane
