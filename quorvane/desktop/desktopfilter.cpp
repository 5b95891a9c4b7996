#include <quorvane/desktop/desktopfilter.h>

#include <quorvane/desktop/entrykeys_p.h>

#include <QDebug>

namespace {

QString valueOr(const xdg::Entry *entry, const QString &key, const QString &fallbackKey)
{
    const QString value = entry->data(key);
    return value.isEmpty() ? entry->data(fallbackKey) : value;
}

} // namespace

namespace xdg {

DesktopFilter::DesktopFilter(QObject *parent)
    : QSortFilterProxyModel(parent)
{
}

DesktopFilter::~DesktopFilter() = default;

QObject *DesktopFilter::model() const
{
    return _model;
}

QString DesktopFilter::category() const
{
    return _category;
}

QString DesktopFilter::section() const
{
    return _section;
}

bool DesktopFilter::showAll() const
{
    return _showAll;
}

QVariant DesktopFilter::data(const QModelIndex &index, int role) const
{
    if (_section.isEmpty())
        return QSortFilterProxyModel::data(index, role);
    const auto *entry
            = QSortFilterProxyModel::data(index, DesktopEntries::EntryRole).value<const Entry *>();
    if (!entry)
        return QSortFilterProxyModel::data(index, role);

    switch (role) {
    case Qt::DisplayRole:
    case DesktopEntries::NameRole: {
        // The reverse of the other roles: a group with a name shows the entry under its main name.
        const QString name = entry->data(_section + QLatin1String("/Name"));
        return name.isEmpty() ? name : entry->data(keys::name());
    }
    case DesktopEntries::IconRole:
        return valueOr(entry, _section + QLatin1String("/Icon"), keys::icon());
    case DesktopEntries::CategoryRole:
        return valueOr(entry, _section + QLatin1String("/Categories"), keys::categories());
    case DesktopEntries::KeywordsRole:
        return valueOr(entry, _section + QLatin1String("/Keywords"), keys::keywords());
    case DesktopEntries::ExecRole:
        return valueOr(entry, _section + QLatin1String("/Exec"), keys::exec());
    default:
        return QSortFilterProxyModel::data(index, role);
    }
}

bool DesktopFilter::filterAcceptsRow(int source_row, const QModelIndex &source_parent) const
{
    const QModelIndex index
            = sourceModel() ? sourceModel()->index(source_row, 0, source_parent) : QModelIndex();
    const auto *entry = index.data(DesktopEntries::EntryRole).value<const Entry *>();
    if (!entry) {
        qWarning() << "Can't retrive entry for " << index.data(DesktopEntries::NameRole).toString();
        return false;
    }
    if (!_section.isEmpty() && entry->data(_section + QLatin1String("/Exec")).isEmpty())
        return false;
    if (entry->data(keys::name()).isEmpty())
        return false;
    if (!_showAll && entry->data(keys::noDisplay()).toLower() == QLatin1String("true"))
        return false;
    return _category.isEmpty() || entry->data(keys::categories()) == _category;
}

void DesktopFilter::setModel(QObject *model)
{
    if (_model == model)
        return;
    auto *entries = qobject_cast<DesktopEntries *>(model);
    if (!entries)
        return;
    _model = entries;
    setSourceModel(_model);
    Q_EMIT modelChanged(_model);
}

void DesktopFilter::setCategory(QString category)
{
    if (_category == category)
        return;
    _category = category;
    invalidateFilter();
    Q_EMIT categoryChanged(_category);
}

void DesktopFilter::setSection(QString category)
{
    if (_section == category)
        return;
    _section = category;
    invalidateFilter();
    Q_EMIT sectionChanged(_section);
}

void DesktopFilter::setShowAll(bool showall)
{
    if (_showAll == showall)
        return;
    _showAll = showall;
    invalidateFilter();
    Q_EMIT showAllChanged(_showAll);
}

} // namespace xdg
