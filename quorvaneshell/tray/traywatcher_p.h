#pragma once

#include "trayitems_p.h"

#include <QDBusContext>
#include <QObject>
#include <QStringList>

namespace quorvane {

// The registry of the tray as programs find it on the bus, org.kde.StatusNotifierWatcher: the
// object of a process that keeps it. Bus name and object path are the business of who creates it.
//
// An item registers by a bus name, its unique name, or an object path; it is listed as bus name and
// path, in order of arrival, and leaves with the owner of its name and with the connection that it
// was registered over. A name without an owner and that of another process are ignored; a text that
// is neither name nor path, and more than 64 items of one program, are refused with an error. That
// a host is registered is always true: whoever keeps this registry is one.
class TrayWatcher
    : public QObject
    , protected QDBusContext
{
    Q_OBJECT
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ registeredItems NOTIFY
                       registeredItemsChanged)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered CONSTANT)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion CONSTANT)

public:
    explicit TrayWatcher(QObject *parent = nullptr);

    QStringList registeredItems() const;
    bool isHostRegistered() const { return true; }
    int protocolVersion() const { return 0; }

    void RegisterStatusNotifierItem(const QString &serviceOrPath);
    void RegisterStatusNotifierHost(const QString &service);
    // Lists an item that was registered elsewhere, if its name has an owner.
    void add(const TrayAddress &item) { _items.add(item); }

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString &item);
    void StatusNotifierItemUnregistered(const QString &item);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();
    void registeredItemsChanged();

private:
    TrayItems _items;
};

} // namespace quorvane
