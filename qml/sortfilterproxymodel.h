#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>
#include <QStringList>

/*! \ingroup shell
    \brief The rows of another model, sorted and filtered by the names that its roles have in QML. All
    that QSortFilterProxyModel has works as well.

    The plain models of the library need it before a view: it drops their announcements of rows that
    don't exist, and they may announce a change for another row than the one that changed. So any
    change of the source is taken as one of all rows: in the next turn of the event loop, once for
    all that came until then, the rows are filtered and sorted anew and dataChanged() is announced
    for all of them. What the source announces is passed on at once besides. */
class SortFilterProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

    /*! The number of rows that the filter lets through. */
    Q_PROPERTY(int count READ count NOTIFY countChanged)

    /*! The role by which rows are sorted; empty, which is the default, for the order of the source.
        Texts are sorted as the user's language does it, regardless of case; sortCaseSensitivity and
        isSortLocaleAware say otherwise. Rows of equal value keep the order of the source. */
    Q_PROPERTY(
            QString sortRoleName READ sortRoleName WRITE setSortRoleName NOTIFY sortRoleNameChanged)

    /*! Qt.AscendingOrder, which is the default, or Qt.DescendingOrder. */
    Q_PROPERTY(Qt::SortOrder sortOrder READ sortOrder WRITE setSortOrder NOTIFY sortOrderChanged)

    /*! The roles in which filterText is looked for: texts, or lists of texts. While none is named,
        filterRole is. */
    Q_PROPERTY(QStringList filterRoleNames READ filterRoleNames WRITE setFilterRoleNames NOTIFY
                       filterRoleNamesChanged)

    /*! Words as a person types them, in any order. A row is shown when each of them is at the
        beginning of a word in one of the roles, or anywhere in the first role. Upper case and accents
        make no difference, and no character is special. Empty for all rows. The row must pass
        filterRegularExpression, too. */
    Q_PROPERTY(QString filterText READ filterText WRITE setFilterText NOTIFY filterTextChanged)

public:
    explicit SortFilterProxyModel(QObject *parent = nullptr);

    void setSourceModel(QAbstractItemModel *model) override;

    /*! Those that the source has now: a ListModel gets them with its first row. */
    QHash<int, QByteArray> roleNames() const override;

    int count() const;

    QString sortRoleName() const;
    void setSortRoleName(const QString &name);

    Qt::SortOrder sortOrder() const;
    void setSortOrder(Qt::SortOrder order);

    QStringList filterRoleNames() const;
    void setFilterRoleNames(const QStringList &names);

    QString filterText() const;
    void setFilterText(const QString &text);

    /*! All roles of a row by their names; empty for a row out of range. */
    Q_INVOKABLE QVariantMap get(int row) const;

    /*! The row in the source, for the operations of the source that take one; -1 for a row out of
        range. */
    Q_INVOKABLE int sourceRow(int row) const;

Q_SIGNALS:
    void countChanged();
    void sortRoleNameChanged();
    void sortOrderChanged();
    void filterRoleNamesChanged();
    void filterTextChanged();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private Q_SLOTS:
    bool _resolveRoles();
    bool _refilter();
    void _announceCount();
    void _scheduleUpdate();
    void _update();

private:
    QString _sortRoleName;
    Qt::SortOrder _sortOrder = Qt::AscendingOrder;
    QStringList _filterRoleNames;
    QVector<int> _filterRoles;
    QString _filterText;
    QStringList _words;
    mutable QCollator _collator;
    bool _updateScheduled = false;
    bool _filtering = false;
    bool _filterIsStale = false;
    int _count = 0;
};
