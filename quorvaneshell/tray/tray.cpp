#include "tray_p.h"

#include "trayitem_p.h"

#include <quorvaneshell/menus/traymenu.h>
#include <quorvaneshell/search/usercollator_p.h>

#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>
#include <utility>

namespace quorvane {

TrayPrivate::TrayPrivate(Tray *tray)
    : _tray(tray)
    , _keeper(&registry)
    , _collator(userCollator())
{
    connect(&registry, &TrayRegistry::itemRegistered, this, &TrayPrivate::_add);
    connect(&registry, &TrayRegistry::itemUnregistered, this, &TrayPrivate::_remove);
    connect(&registry, &TrayRegistry::registeredChanged, tray, &Tray::registeredChanged);
    connect(&registry, &TrayRegistry::ownerChanged, tray, &Tray::ownerChanged);
    // One subscription to all signals of all items: for one to each, Qt asks the bus and waits.
    QDBusConnection::sessionBus().connect(QString(), QString(),
                                          QStringLiteral("org.kde.StatusNotifierItem"), QString(),
                                          this, SLOT(_hearItem(QDBusMessage)));
}

TrayItem *TrayPrivate::find(const QString &key) const
{
    const auto found = std::find_if(_items.cbegin(), _items.cend(), [&key](const TrayItem *item) {
        return item->address().text() == key;
    });
    return found == _items.cend() ? nullptr : *found;
}

int TrayPrivate::rowOf(const TrayItem *item) const
{
    const auto found = std::find_if(rows.cbegin(), rows.cend(),
                                    [item](const Row &row) { return row.item == item; });
    return found == rows.cend() ? -1 : int(found - rows.cbegin());
}

// The bus vouches for the sender of a signal, which is a unique name.
void TrayPrivate::_hearItem(const QDBusMessage &signal)
{
    for (TrayItem *item : std::as_const(_items)) {
        if (item->owner() == signal.service() && item->address().path == signal.path())
            item->refresh();
    }
}

void TrayPrivate::_add(const TrayAddress &address, const QString &owner)
{
    const QString key = address.text();
    if (TrayItem *known = find(key)) {
        known->refresh();
        return;
    }
    auto *item = new TrayItem(address, owner, _tray);
    _items.append(item);
    connect(item, &TrayItem::shownChanged, this,
            [this, item] { item->isShown() ? _show(item) : _hide(item); });
    connect(item, &TrayItem::changed, this, [this, item](const QVector<int> &roles) {
        const QModelIndex changed = _tray->index(rowOf(item));
        if (changed.isValid())
            Q_EMIT _tray->dataChanged(changed, changed, roles);
    });
    connect(item, &TrayItem::menuRequested, this,
            [this, key](int x, int y) { Q_EMIT _tray->menuRequested(key, x, y); });
    connect(item, &TrayItem::failed, this,
            [this, key](const QString &message) { Q_EMIT _tray->failed(key, message); });
}

void TrayPrivate::_remove(const TrayAddress &address)
{
    TrayItem *item = find(address.text());
    if (!item)
        return;
    _items.removeOne(item);
    item->disconnect(this);
    item->deleteLater();
    _hide(item);
}

void TrayPrivate::_show(TrayItem *item)
{
    static const QStringList categories { QStringLiteral("ApplicationStatus"),
                                          QStringLiteral("Communications"),
                                          QStringLiteral("SystemServices"),
                                          QStringLiteral("Hardware") };
    const int category = int(categories.indexOf(item->value(Tray::CategoryRole).toString()));
    const Row shown { item, category < 0 ? int(categories.size()) : category,
                      item->value(Qt::DisplayRole).toString() };
    const auto place = std::upper_bound(
            rows.cbegin(), rows.cend(), shown,
            [this](const Row &one, const Row &other) { return _isBefore(one, other); });
    const int row = int(place - rows.cbegin());
    const QPointer<Tray> alive(_tray);
    _tray->beginInsertRows({}, row, row);
    rows.insert(row, shown);
    _tray->endInsertRows();
    if (alive)
        Q_EMIT alive->countChanged();
}

void TrayPrivate::_hide(TrayItem *item)
{
    const int row = rowOf(item);
    if (row < 0)
        return;
    const QPointer<Tray> alive(_tray);
    _tray->beginRemoveRows({}, row, row);
    rows.removeAt(row);
    _tray->endRemoveRows();
    if (alive)
        Q_EMIT alive->countChanged();
}

bool TrayPrivate::_isBefore(const Row &one, const Row &other) const
{
    if (one.category != other.category)
        return one.category < other.category;
    const int order = _collator.compare(one.title, other.title);
    return order != 0 ? order < 0 : one.item->address().text() < other.item->address().text();
}

Tray::Tray(QObject *parent)
    : ListModel(parent)
    , _d(std::make_unique<TrayPrivate>(this))
{
}

Tray::~Tray() = default;

bool Tray::isRegistered() const
{
    return _d->registry.isRegistered();
}

QVariantMap Tray::owner() const
{
    return _d->registry.owner();
}

int Tray::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_d->rows.size());
}

QVariant Tray::data(const QModelIndex &index, int role) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid)
                   ? _d->rows.at(index.row()).item->value(role)
                   : QVariant();
}

QHash<int, QByteArray> Tray::roleNames() const
{
    return {
        { KeyRole, "key" },
        { ItemIdRole, "itemId" },
        { TitleRole, "title" },
        { StatusRole, "status" },
        { CategoryRole, "category" },
        { IconSourceRole, "iconSource" },
        { OverlaySourceRole, "overlaySource" },
        { LabelRole, "label" },
        { ToolTipRole, "toolTip" },
        { HasMenuRole, "hasMenu" },
        { IsMenuRole, "isMenu" },
        { RespondsRole, "responds" },
    };
}

int Tray::indexOf(const QString &key) const
{
    return _d->rowOf(_d->find(key));
}

QVariantMap Tray::find(const QString &key) const
{
    return get(indexOf(key));
}

TrayMenu *Tray::menu(const QString &key) const
{
    TrayItem *item = _d->find(key);
    return item ? item->menu() : nullptr;
}

void Tray::activate(const QString &key, int x, int y)
{
    if (TrayItem *item = _d->find(key))
        item->activate(x, y);
}

void Tray::secondaryActivate(const QString &key, int x, int y)
{
    if (TrayItem *item = _d->find(key))
        item->secondaryActivate(x, y);
}

void Tray::contextMenu(const QString &key, int x, int y)
{
    if (TrayItem *item = _d->find(key))
        item->contextMenu(x, y);
}

void Tray::scroll(const QString &key, int delta, Qt::Orientation orientation)
{
    if (TrayItem *item = _d->find(key))
        item->scroll(delta, orientation);
}

} // namespace quorvane
