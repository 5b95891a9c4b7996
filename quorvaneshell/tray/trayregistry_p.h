#pragma once

#include "trayitems_p.h"

#include <quorvaneshell/bus/busnames_p.h>

#include <QObject>
#include <QVariantMap>
#include <QVector>

#include <memory>

class QDBusMessage;

namespace quorvane {

class PatientCall;
class TrayWatcher;

// Tells which items there are in the session: what the registry on the bus lists, whoever keeps it.
// While nobody does, this process does.
//
// An item stays from its registration until its bus name loses its owner, or the registry says that
// it has gone. It stays when the registry leaves or is replaced, with all that programs which
// register only once would lose otherwise. One that has registered under two names is told of once.
class TrayRegistry : public QObject
{
    Q_OBJECT

public:
    explicit TrayRegistry(QObject *parent = nullptr);
    ~TrayRegistry() override;

    // Whether the registry has answered with its items, and so takes this process for a host.
    bool isRegistered() const { return _registered; }
    // {name, pid} of the other process that keeps the registry; empty when this one does, or
    // nobody.
    QVariantMap owner() const { return _ownerProcess; }

Q_SIGNALS:
    // Again for an item that registers again. The owner is the unique name of its program.
    void itemRegistered(const TrayAddress &item, const QString &owner);
    void itemUnregistered(const TrayAddress &item);
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
    void _keepRegistry();
    void _findItems();
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
    std::unique_ptr<TrayWatcher> _watcher;
};

} // namespace quorvane
