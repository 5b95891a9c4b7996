#include "tray.h"

#include "trayitem_p.h"

#include <quorvaneshell/menus/traymenu.h>
#include <quorvaneshell/search/usercollator_p.h>

#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>

namespace quorvane {

Tray::Tray(QObject *parent)
    : ListModel(parent)
    , _collator(userCollator())
{
    connect(&_registry, &TrayRegistry::itemRegistered, this, &Tray::_add);
    connect(&_registry, &TrayRegistry::itemUnregistered, this, &Tray::_remove);
    connect(&_registry, &TrayRegistry::registeredChanged, this, &Tray::registeredChanged);
    connect(&_registry, &TrayRegistry::ownerChanged, this, &Tray::ownerChanged);
    connect(this, &Tray::rowsInserted, this, &Tray::countChanged);
    connect(this, &Tray::rowsRemoved, this, &Tray::countChanged);
    // One subscription to all signals of all items: for one to each, Qt asks the bus and waits.
    QDBusConnection::sessionBus().connect(QString(), QString(),
                                          QStringLiteral("org.kde.StatusNotifierItem"), QString(),
                                          this, SLOT(_hearItem(QDBusMessage)));
}

Tray::~Tray() = default;

bool Tray::isRegistered() const
{
    return _registry.isRegistered();
}

QVariantMap Tray::owner() const
{
    return _registry.owner();
}

int Tray::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : _rows.size();
}

QVariant Tray::data(const QModelIndex &index, int role) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid)
                   ? _rows.at(index.row()).item->value(role)
                   : QVariant();
}

QHash<int, QByteArray> Tray::roleNames() const
{
    return {
        { TrayItem::KeyRole, "key" },
        { TrayItem::ItemIdRole, "itemId" },
        { TrayItem::TitleRole, "title" },
        { TrayItem::StatusRole, "status" },
        { TrayItem::CategoryRole, "category" },
        { TrayItem::IconSourceRole, "iconSource" },
        { TrayItem::OverlaySourceRole, "overlaySource" },
        { TrayItem::LabelRole, "label" },
        { TrayItem::ToolTipRole, "toolTip" },
        { TrayItem::HasMenuRole, "hasMenu" },
        { TrayItem::IsMenuRole, "isMenu" },
        { TrayItem::RespondsRole, "responds" },
    };
}

TrayMenu *Tray::menu(const QString &key) const
{
    TrayItem *item = _find(key);
    return item ? item->menu() : nullptr;
}

void Tray::activate(const QString &key, int x, int y)
{
    if (TrayItem *item = _find(key))
        item->activate(x, y);
}

void Tray::secondaryActivate(const QString &key, int x, int y)
{
    if (TrayItem *item = _find(key))
        item->secondaryActivate(x, y);
}

void Tray::contextMenu(const QString &key, int x, int y)
{
    if (TrayItem *item = _find(key))
        item->contextMenu(x, y);
}

void Tray::scroll(const QString &key, int delta, const QString &orientation)
{
    if (TrayItem *item = _find(key))
        item->scroll(delta, orientation);
}

// The bus vouches for the sender of a signal, which is a unique name.
void Tray::_hearItem(const QDBusMessage &signal)
{
    for (TrayItem *item : qAsConst(_items)) {
        if (item->owner() == signal.service() && item->address().path == signal.path())
            item->refresh();
    }
}

void Tray::_add(const TrayAddress &address, const QString &owner)
{
    const QString key = address.text();
    if (TrayItem *known = _find(key)) {
        known->refresh();
        return;
    }
    auto *item = new TrayItem(address, owner, this);
    _items.append(item);
    connect(item, &TrayItem::shownChanged, this,
            [this, item] { item->isShown() ? _show(item) : _hide(item); });
    connect(item, &TrayItem::changed, this, [this, item](const QVector<int> &roles) {
        const QModelIndex changed = index(_rowOf(item));
        if (changed.isValid())
            Q_EMIT dataChanged(changed, changed, roles);
    });
    connect(item, &TrayItem::menuRequested, this,
            [this, key](int x, int y) { Q_EMIT menuRequested(key, x, y); });
}

void Tray::_remove(const TrayAddress &address)
{
    TrayItem *item = _find(address.text());
    if (!item)
        return;
    _items.removeOne(item);
    item->disconnect(this);
    item->deleteLater();
    _hide(item);
}

void Tray::_show(TrayItem *item)
{
    static const QStringList categories { QStringLiteral("ApplicationStatus"),
                                          QStringLiteral("Communications"),
                                          QStringLiteral("SystemServices"),
                                          QStringLiteral("Hardware") };
    const int category = categories.indexOf(item->value(TrayItem::CategoryRole).toString());
    const QString title = item->value(TrayItem::TitleRole).toString();
    const Row shown { item, category < 0 ? int(categories.size()) : category,
                      title.isEmpty() ? item->value(TrayItem::ItemIdRole).toString() : title };
    const auto place = std::upper_bound(
            _rows.cbegin(), _rows.cend(), shown,
            [this](const Row &one, const Row &other) { return _isBefore(one, other); });
    const int row = int(place - _rows.cbegin());
    beginInsertRows({}, row, row);
    _rows.insert(row, shown);
    endInsertRows();
}

void Tray::_hide(TrayItem *item)
{
    const int row = _rowOf(item);
    if (row < 0)
        return;
    beginRemoveRows({}, row, row);
    _rows.removeAt(row);
    endRemoveRows();
}

bool Tray::_isBefore(const Row &one, const Row &other) const
{
    if (one.category != other.category)
        return one.category < other.category;
    const int order = _collator.compare(one.title, other.title);
    return order != 0 ? order < 0 : one.item->address().text() < other.item->address().text();
}

int Tray::_rowOf(const TrayItem *item) const
{
    const auto found = std::find_if(_rows.cbegin(), _rows.cend(),
                                    [item](const Row &row) { return row.item == item; });
    return found == _rows.cend() ? -1 : int(found - _rows.cbegin());
}

TrayItem *Tray::_find(const QString &key) const
{
    const auto found = std::find_if(_items.cbegin(), _items.cend(), [&key](const TrayItem *item) {
        return item->address().text() == key;
    });
    return found == _items.cend() ? nullptr : *found;
}

} // namespace quorvane
