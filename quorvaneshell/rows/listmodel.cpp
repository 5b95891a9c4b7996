#include "listmodel.h"

#include <quorvaneshell/pictures/iconcache_p.h>

#include <QSet>

namespace quorvane {

namespace {

// Between the first and the last row that shows one of them.
void announceIcons(ListModel *model, const QStringList &sources)
{
    const QSet<QString> read(sources.cbegin(), sources.cend());
    const int role = model->roleNames().key("iconSource", -1);
    int first = -1;
    int last = -1;
    for (int row = 0; row < model->count(); ++row) {
        if (!read.contains(model->index(row).data(role).toString()))
            continue;
        last = row;
        if (first < 0)
            first = row;
    }
    if (first >= 0)
        Q_EMIT model->dataChanged(model->index(first), model->index(last), { Qt::DecorationRole });
}

} // namespace

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
    connect(&IconCache::instance(), &IconCache::iconsRead, this,
            [this](const QStringList &sources) { announceIcons(this, sources); });
}

int ListModel::count() const
{
    return rowCount();
}

QVariantMap ListModel::get(int row) const
{
    return rowValues(*this, row);
}

} // namespace quorvane
