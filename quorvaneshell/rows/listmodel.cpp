#include "listmodel.h"

namespace quorvane {

QVariantMap rowValues(const QAbstractItemModel &model, int row)
{
    const QModelIndex index = model.index(row, 0);
    if (!index.isValid())
        return {};
    QVariantMap values;
    const QHash<int, QByteArray> names = model.roleNames();
    for (auto role = names.cbegin(); role != names.cend(); ++role)
        values.insert(QString::fromUtf8(role.value()), index.data(role.key()));
    return values;
}

ListModel::ListModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

QVariantMap ListModel::get(int row) const
{
    return rowValues(*this, row);
}

} // namespace quorvane
