#include "sortfilterproxymodel.h"

#include <quorvaneshell/rows/listmodel.h>
#include <quorvaneshell/search/wordmatch.h>

#include <QPointer>

#include <algorithm>
#include <utility>

using namespace quorvane;

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

    // What has another cause than our own setters and the source is counted later: inside these
    // signals Qt goes on with an object that a slot may delete.
    const auto countLater = [this](auto signal) {
        connect(this, signal, this, &SortFilterProxyModel::_announceCount, Qt::QueuedConnection);
    };
    countLater(&QAbstractItemModel::rowsInserted);
    countLater(&QAbstractItemModel::rowsRemoved);
    countLater(&QAbstractItemModel::modelReset);
}

void SortFilterProxyModel::setSourceModel(QAbstractItemModel *model)
{
    if (QAbstractItemModel *previous = sourceModel())
        previous->disconnect(this);
    const QPointer<SortFilterProxyModel> alive = this;
    QSortFilterProxyModel::setSourceModel(model);
    if (alive && model) {
        connect(model, &QAbstractItemModel::dataChanged, this,
                &SortFilterProxyModel::_scheduleUpdate);
        // After Qt's own slots on these, and a ListModel has no roles before its first row.
        connect(model, &QAbstractItemModel::rowsInserted, this,
                &SortFilterProxyModel::_resolveRoles);
        connect(model, &QAbstractItemModel::modelReset, this, &SortFilterProxyModel::_resolveRoles);
        connect(model, &QAbstractItemModel::rowsRemoved, this,
                &SortFilterProxyModel::_announceCount);
    }
    if (alive)
        _resolveRoles();
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
    if (_resolveRoles())
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
    if (_resolveRoles())
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
    if (_resolveRoles())
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
    if (_refilter())
        Q_EMIT filterTextChanged();
}

QVariantMap SortFilterProxyModel::get(int row) const
{
    return rowValues(*this, row);
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
    const bool areTexts = a.userType() == QMetaType::QString && b.userType() == QMetaType::QString;
    if (!isSortLocaleAware() || !areTexts)
        return QSortFilterProxyModel::lessThan(left, right);
    // Qt's own comparison by language regards the case where the language is that of C.
    _collator.setCaseSensitivity(sortCaseSensitivity());
    return _collator.compare(a.toString(), b.toString()) < 0;
}

// Role names may come later than their use, with the source or with its rows. Like the next, it
// returns whether the model is still there.
bool SortFilterProxyModel::_resolveRoles()
{
    const QHash<int, QByteArray> names = roleNames();
    const auto number = [&names](const QString &name) { return names.key(name.toUtf8(), -1); };

    QVector<int> filterRoles;
    for (const QString &name : std::as_const(_filterRoleNames))
        filterRoles.append(number(name));
    if (std::exchange(_filterRoles, filterRoles) != filterRoles && !_refilter())
        return false;

    const QPointer<SortFilterProxyModel> alive = this;
    const int role = number(_sortRoleName);
    if (role >= 0)
        setSortRole(role);
    if (alive)
        sort(role < 0 ? -1 : 0, _sortOrder);
    if (alive)
        _announceCount();
    return alive;
}

// A slot may ask for another filter while Qt is at work with this one.
bool SortFilterProxyModel::_refilter()
{
    _filterIsStale = true;
    if (_filtering)
        return true;
    const QPointer<SortFilterProxyModel> alive = this;
    _filtering = true;
    while (alive && std::exchange(_filterIsStale, false))
        invalidateFilter();
    if (!alive)
        return false;
    _filtering = false;
    _announceCount();
    return alive;
}

void SortFilterProxyModel::_announceCount()
{
    const int count = rowCount();
    if (std::exchange(_count, count) != count)
        Q_EMIT countChanged();
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
    if (!_refilter())
        return;
    // Sorts anew, and unlike invalidate() without a reset of the views.
    const QPointer<SortFilterProxyModel> alive = this;
    setDynamicSortFilter(dynamicSortFilter());
    if (alive && rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}
