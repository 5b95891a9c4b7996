#pragma once

#include "menuitem_p.h"
#include "menurow_p.h"

#include <quorvaneshell/rows/rowwalk_p.h>

#include <QPointer>

#include <vector>

namespace quorvane {

class MenuConnection;
class TrayMenu;

// The rows of one level of a menu, and the levels below them. They announce themselves as those of
// the model.
class MenuRows
{
public:
    // The connection outlives them.
    MenuRows(TrayMenu *model, const MenuConnection *connection);

    int count() const { return int(_rows.size()); }
    const MenuRow &at(int row) const { return _rows.at(size_t(row)); }
    // Without a value for a row that isn't there.
    QVariant value(int row, int role) const;
    int indexOf(int id) const;

    // What stays keeps its row and its submenu.
    void show(const std::vector<MenuItem> &items);
    // Changes of properties by id, here and below.
    void update(const QHash<int, QVariantMap> &updates);

private:
    friend class RowWalk<MenuRows>;
    using Wanted = std::vector<MenuItem>;

    static int _keyOf(const MenuRow &row) { return row.id(); }
    static int _keyOf(const MenuItem &item) { return item.id; }
    MenuRow _makeRow(const MenuItem &item);
    static void _rowsRemoved(const std::vector<MenuRow> &rows);
    template<typename IsCurrent>
    void _updateRows(const Wanted &wanted, const IsCurrent &isCurrent);
    void _change(int row, const QVariantMap &properties, bool hasItems);
    QPointer<TrayMenu> _assign(MenuRow *row, const QVariantMap &properties, bool hasItems);
    static void _removeSubmenu(const QPointer<TrayMenu> &submenu);

    TrayMenu *const _model;
    const MenuConnection *const _connection;
    std::vector<MenuRow> _rows;
    RowWalk<MenuRows> _walk;
};

} // namespace quorvane
