#pragma once

#include "tray.h"
#include "traykeeper_p.h"
#include "trayregistry_p.h"

#include <QCollator>
#include <QObject>
#include <QVector>

class QDBusMessage;

namespace quorvane {

class TrayItem;

// The items of a tray, and the rows of those that are shown.
class TrayPrivate : public QObject
{
    Q_OBJECT

public:
    explicit TrayPrivate(Tray *tray);

    TrayItem *find(const QString &key) const;
    int rowOf(const TrayItem *item) const;

    struct Row
    {
        TrayItem *item;
        int category;
        QString title; // As the item came with it.
    };

    TrayRegistry registry;
    QVector<Row> rows;

private Q_SLOTS:
    void _hearItem(const QDBusMessage &signal);

private:
    void _add(const TrayAddress &address, const QString &owner);
    void _remove(const TrayAddress &address);
    void _show(TrayItem *item);
    void _hide(TrayItem *item);
    bool _isBefore(const Row &one, const Row &other) const;

    Tray *const _tray;
    TrayKeeper _keeper;
    QVector<TrayItem *> _items; // All that are registered.
    const QCollator _collator;
};

} // namespace quorvane
