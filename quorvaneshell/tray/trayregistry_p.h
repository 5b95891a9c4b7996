#pragma once

#include "trayitems_p.h"

#include <quorvaneshell/bus/busnames_p.h>

#include <QObject>
#include <QVariantMap>
#include <QVector>

class QDBusMessage;
class QDBusPendingCall;

namespace quorvane {

class PatientCall;

// Tells which items there are in the session: what the registry on the bus lists, whoever keeps it.
//
// An item stays from its registration until its bus name loses its owner, or the registry says that
// it has gone. It stays when the registry leaves or is replaced, with all that programs which
// register only once would lose otherwise. One that has registered under two names is told of once.
class TrayRegistry : public QObject
{
    Q_OBJECT

public:
    TrayRegistry();
    ~TrayRegistry() override;

    // The bus name of the registry and its interface, which are one text, and the path of its object.
    static QString busName();
    static QString path();
    // Asks the bus for a name, for which this process doesn't wait in a queue.
    static QDBusPendingCall requestName(const QString &name);
    // Of a list from the bus as much is read, which is more than anyone looks at.
    static constexpr int mostListed = 1000;

    // Whether the registry has answered with its items, and so takes this process for a host.
    bool isRegistered() const { return _registered; }
    // {name, pid} of the other process that keeps the registry; empty when this one does, or
    // nobody.
    QVariantMap owner() const { return _ownerProcess; }
    // Those that are there.
    QVector<TrayAddress> items() const { return _items.items(); }

Q_SIGNALS:
    // Again for an item that registers again. The owner is the unique name of its program.
    void itemRegistered(const quorvane::TrayAddress &item, const QString &owner);
    void itemUnregistered(const quorvane::TrayAddress &item);
    void registeredChanged();
    void ownerChanged();

private Q_SLOTS:
    void _hearRegistry(const QDBusMessage &signal);

private:
    // One that was told of.
    struct Item
    {
        TrayAddress address;
        QString owner;
    };

    void _follow(const QString &owner);
    void _register();
    void _takeItems(const QStringList &items);
    void _askForProcess();
    void _add(const TrayAddress &item);
    void _tell(const TrayAddress &address);
    void _tellOfRemoval(const TrayAddress &address);
    void _setRegistered(bool registered);
    void _setOwnerProcess(const QVariantMap &process);

    const QString _hostName;
    TrayItems _items;
    QVector<Item> _told;
    BusNames _names;
    QString _owner; // The unique name of who keeps the registry.
    QVariantMap _ownerProcess;
    bool _registered = false;
    PatientCall *_list = nullptr;
};

} // namespace quorvane
