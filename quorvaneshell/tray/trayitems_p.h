#pragma once

#include "trayaddress_p.h"

#include <quorvaneshell/bus/busnames_p.h>

#include <QObject>
#include <QQueue>
#include <QVector>

namespace quorvane {

// A list of items of the tray, in order of arrival. An item is there once the bus has confirmed its
// name, and until that loses its owner. One that was added for a client leaves with that client,
// too, and is there only if both are of one process: a client may use several connections.
//
// Nobody fills the list. Of one program there are 64 items, the rest is left out. Of all programs
// there are 500: beyond that, items of those that have most wait until there is room.
class TrayItems : public QObject
{
    Q_OBJECT

public:
    explicit TrayItems(QObject *parent = nullptr);

    QVector<TrayAddress> items() const;
    bool contains(const TrayAddress &item) const;
    // The unique name of an item's program; empty for an item that isn't there.
    QString owner(const TrayAddress &item) const { return _names.owner(item.service); }
    // Whether a client, by its unique name, has less than it may have.
    bool hasRoomFor(const QString &client) const;

    // Nothing happens for an item that is known, and for an address that could be of none.
    void add(const TrayAddress &item, const QString &client = {});
    void remove(const TrayAddress &item);

Q_SIGNALS:
    void added(const quorvane::TrayAddress &item);
    // The item has left the list.
    void removed(const quorvane::TrayAddress &item);

private:
    struct Entry
    {
        TrayAddress item;
        QString client;
        bool isThere = false;
    };

    void _hear(const QString &name, const QString &owner);
    void _confirm(const Entry &entry);
    void _setThere(const Entry &entry, bool isThere);
    void _keepWithinBounds();
    void _leave(const QVector<Entry> &entries);
    void _fillUp();
    int _find(const Entry &entry) const;
    QString _program(const Entry &entry) const;
    int _numberOf(const QString &program) const;

    QVector<Entry> _entries;
    QQueue<Entry> _waiting;
    BusNames _names;
};

} // namespace quorvane
