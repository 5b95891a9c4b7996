#pragma once

#include <QAbstractItemModel>
#include <QVector>

#include <algorithm>

namespace quorvane {

// The roles that dataChanged() names for a row, given its values before and after as functions of a
// role: all that have a name in the model, and those of Qt for views.
template<typename Before, typename After>
QVector<int> changedRoles(const QAbstractItemModel &model, const Before &before, const After &after)
{
    const QHash<int, QByteArray> names = model.roleNames();
    QVector<int> roles;
    const auto compare = [&](int role) {
        if (before(role) != after(role))
            roles += role;
    };
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        compare(name.key());
    compare(Qt::DisplayRole);
    compare(Qt::ToolTipRole);
    // Icons are never equal.
    if (roles.contains(names.key("iconSource", -1)))
        roles += Qt::DecorationRole;
    std::sort(roles.begin(), roles.end());
    return roles;
}

} // namespace quorvane
