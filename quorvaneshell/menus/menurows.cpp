#include "menurows_p.h"

#include "menuconnection_p.h"
#include "traymenu_p.h"

#include <quorvaneshell/rows/changedroles_p.h>

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

bool isSubmenu(const QVariantMap &properties)
{
    return properties.value(QStringLiteral("children-display")) == QLatin1String("submenu");
}

// A property that goes back to its default has no value.
QVariantMap updated(QVariantMap properties, const QVariantMap &update)
{
    for (auto property = update.cbegin(); property != update.cend(); ++property) {
        if (property->isValid())
            properties.insert(property.key(), *property);
        else
            properties.remove(property.key());
    }
    return properties;
}

} // namespace

MenuRows::MenuRows(TrayMenu *model, const MenuConnection *connection)
    : _model(model)
    , _connection(connection)
    , _walk(model, this)
{
}

QVariant MenuRows::value(int row, int role) const
{
    return row >= 0 && row < count() ? at(row).value(role, _connection->themePath()) : QVariant();
}

int MenuRows::indexOf(int id) const
{
    const auto found = std::find_if(_rows.cbegin(), _rows.cend(),
                                    [id](const MenuRow &row) { return row.id() == id; });
    return found == _rows.cend() ? -1 : int(found - _rows.cbegin());
}

void MenuRows::show(const std::vector<MenuItem> &items)
{
    _walk.show(items);
}

void MenuRows::update(const QHash<int, QVariantMap> &updates)
{
    const QPointer<TrayMenu> alive = _model;
    for (int row = 0; alive && row < count(); ++row) {
        const MenuRow &changed = at(row);
        const auto update = updates.constFind(changed.id());
        if (update != updates.cend())
            _change(row, updated(changed.properties(), *update),
                    changed.submenu && changed.submenu->count() > 0);
        if (TrayMenu *below = alive ? alive->submenu(row) : nullptr)
            below->_d->rows.update(updates);
    }
}

MenuRow MenuRows::_makeRow(const MenuItem &item)
{
    MenuRow row(item.id);
    _assign(&row, item.properties, !item.children.empty());
    if (row.submenu)
        row.submenu->_d->rows.show(item.children);
    return row;
}

void MenuRows::_rowsRemoved(const std::vector<MenuRow> &rows)
{
    for (const MenuRow &row : rows)
        _removeSubmenu(row.submenu);
}

template<typename IsCurrent>
void MenuRows::_updateRows(const Wanted &wanted, const IsCurrent &isCurrent)
{
    for (size_t row = 0; isCurrent() && row < wanted.size(); ++row) {
        _change(int(row), wanted[row].properties, !wanted[row].children.empty());
        if (isCurrent() && _rows[row].submenu)
            _rows[row].submenu->_d->rows.show(wanted[row].children);
    }
}

void MenuRows::_change(int row, const QVariantMap &properties, bool hasItems)
{
    MenuRow &changed = _rows[size_t(row)];
    if (changed.properties() == properties
        && (changed.submenu != nullptr) == (hasItems || isSubmenu(properties)))
        return;
    QHash<int, QVariant> before;
    for (int role = TrayMenu::IdRole; role <= TrayMenu::ShortcutRole; ++role)
        before.insert(role, value(row, role));
    for (const int role : { Qt::DisplayRole, Qt::ToolTipRole })
        before.insert(role, value(row, role));
    const QPointer<TrayMenu> gone = _assign(&changed, properties, hasItems);
    const QVector<int> roles = changedRoles(
            *_model, [&before](int role) { return before.value(role); },
            [this, row](int role) { return value(row, role); });
    const QModelIndex index = _model->index(row);
    if (!roles.isEmpty())
        Q_EMIT _model->dataChanged(index, index, roles);
    _removeSubmenu(gone);
}

// Returns the submenu that the row has no longer.
QPointer<TrayMenu> MenuRows::_assign(MenuRow *row, const QVariantMap &properties, bool hasItems)
{
    row->setProperties(properties);
    if (!hasItems && !isSubmenu(properties))
        return std::exchange(row->submenu, {});
    if (!row->submenu)
        row->submenu = new TrayMenu(row->id(), _model);
    return {};
}

// A view may still show it.
void MenuRows::_removeSubmenu(const QPointer<TrayMenu> &submenu)
{
    if (submenu)
        submenu->_d->rows.show({});
    if (submenu)
        submenu->deleteLater();
}

} // namespace quorvane
