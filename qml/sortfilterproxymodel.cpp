#include "sortfilterproxymodel.h"

#include "wordmatch.h"

#include <algorithm>

namespace {

QString searchableText(const QVariant &value)
{
    const QStringList list = value.toStringList();
    return list.isEmpty() ? value.toString() : list.join(QLatin1Char('\n'));
}

} // namespace

SortFilterProxyModel::SortFilterProxyModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
    setSortLocaleAware(true);
    setSortCaseSensitivity(Qt::CaseInsensitive);

    connect(this, &QAbstractItemModel::rowsInserted, this, &SortFilterProxyModel::countChanged);
    connect(this, &QAbstractItemModel::rowsRemoved, this, &SortFilterProxyModel::countChanged);
    connect(this, &QAbstractItemModel::modelReset, this, &SortFilterProxyModel::countChanged);
}

void SortFilterProxyModel::setSourceModel(QAbstractItemModel *model)
{
    if (const QAbstractItemModel *previous = sourceModel()) {
        disconnect(previous, &QAbstractItemModel::dataChanged, this, nullptr);
        disconnect(previous, &QAbstractItemModel::rowsInserted, this, nullptr);
        disconnect(previous, &QAbstractItemModel::modelReset, this, nullptr);
    }
    QSortFilterProxyModel::setSourceModel(model);
    _resolveRoles();
    if (!model)
        return;
    connect(model, &QAbstractItemModel::dataChanged, this, &SortFilterProxyModel::_scheduleUpdate);
    // A ListModel has no roles before its first row.
    connect(model, &QAbstractItemModel::rowsInserted, this, &SortFilterProxyModel::_resolveRoles);
    connect(model, &QAbstractItemModel::modelReset, this, &SortFilterProxyModel::_resolveRoles);
}

QHash<int, QByteArray> SortFilterProxyModel::roleNames() const
{
    return sourceModel() ? sourceModel()->roleNames() : QSortFilterProxyModel::roleNames();
}

int SortFilterProxyModel::count() const
{
    return rowCount();
}

QString SortFilterProxyModel::sortRoleName() const
{
    return _sortRoleName;
}

void SortFilterProxyModel::setSortRoleName(const QString &name)
{
    if (name == _sortRoleName)
        return;
    _sortRoleName = name;
    _resolveRoles();
    Q_EMIT sortRoleNameChanged();
}

Qt::SortOrder SortFilterProxyModel::sortOrder() const
{
    return _sortOrder;
}

void SortFilterProxyModel::setSortOrder(Qt::SortOrder order)
{
    if (order == _sortOrder)
        return;
    _sortOrder = order;
    _resolveRoles();
    Q_EMIT sortOrderChanged();
}

QStringList SortFilterProxyModel::filterRoleNames() const
{
    return _filterRoleNames;
}

void SortFilterProxyModel::setFilterRoleNames(const QStringList &names)
{
    if (names == _filterRoleNames)
        return;
    _filterRoleNames = names;
    _resolveRoles();
    Q_EMIT filterRoleNamesChanged();
}

QString SortFilterProxyModel::filterText() const
{
    return _filterText;
}

void SortFilterProxyModel::setFilterText(const QString &text)
{
    if (text == _filterText)
        return;
    _filterText = text;
    _words = foldedWords(text);
    invalidateFilter();
    Q_EMIT filterTextChanged();
}

QVariantMap SortFilterProxyModel::get(int row) const
{
    const QModelIndex index = this->index(row, 0);
    QVariantMap values;
    if (!index.isValid())
        return values;
    const QHash<int, QByteArray> names = roleNames();
    for (auto role = names.cbegin(); role != names.cend(); ++role)
        values.insert(QString::fromUtf8(role.value()), index.data(role.key()));
    return values;
}

int SortFilterProxyModel::sourceRow(int row) const
{
    return mapToSource(index(row, 0)).row();
}

bool SortFilterProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (!QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent))
        return false;
    if (_words.isEmpty())
        return true;

    const QModelIndex index = sourceModel()->index(sourceRow, 0, sourceParent);
    const QVector<int> roles
            = _filterRoleNames.isEmpty() ? QVector<int> { filterRole() } : _filterRoles;
    QStringList texts;
    for (const int role : roles)
        texts.append(role < 0 ? QString() : foldedText(searchableText(index.data(role))));
    return std::all_of(_words.cbegin(), _words.cend(), [&texts](const QString &word) {
        return std::any_of(texts.cbegin(), texts.cend(),
                           [&word](const QString &text) { return beginsWord(text, word); })
               || texts.value(0).contains(word);
    });
}

bool SortFilterProxyModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const QVariant a = left.data(sortRole());
    const QVariant b = right.data(sortRole());
    if (!isSortLocaleAware() || a.type() != QVariant::String || b.type() != QVariant::String)
        return QSortFilterProxyModel::lessThan(left, right);
    // Qt's own comparison by language regards the case where the language is that of C.
    _collator.setCaseSensitivity(sortCaseSensitivity());
    return _collator.compare(a.toString(), b.toString()) < 0;
}

// Role names may come later than their use, with the source or with its rows.
void SortFilterProxyModel::_resolveRoles()
{
    const QHash<int, QByteArray> names = roleNames();
    const auto number = [&names](const QString &name) { return names.key(name.toUtf8(), -1); };

    QVector<int> filterRoles;
    for (const QString &name : qAsConst(_filterRoleNames))
        filterRoles.append(number(name));
    if (filterRoles != _filterRoles) {
        _filterRoles = filterRoles;
        invalidateFilter();
    }

    const int role = number(_sortRoleName);
    if (role >= 0)
        setSortRole(role);
    sort(role < 0 ? -1 : 0, _sortOrder);
}

void SortFilterProxyModel::_scheduleUpdate()
{
    if (_updateScheduled)
        return;
    _updateScheduled = true;
    QMetaObject::invokeMethod(this, &SortFilterProxyModel::_update, Qt::QueuedConnection);
}

void SortFilterProxyModel::_update()
{
    _updateScheduled = false;
    invalidateFilter();
    // Sorts anew, and unlike invalidate() without a reset of the views.
    setDynamicSortFilter(dynamicSortFilter());
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}
