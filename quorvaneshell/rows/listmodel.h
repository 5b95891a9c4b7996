#pragma once

#include <quorvaneshell/quorvaneshell_export.h>

#include <QAbstractListModel>
#include <QVariantMap>

namespace quorvane {

template<typename Rows>
class RowWalk;

/*! All roles of a row of a model by their names, such as QML has them; empty for a row that isn't
    there. */
QUORVANE_SHELL_EXPORT QVariantMap rowValues(const QAbstractItemModel &model, int row);

/*! \ingroup shell
    \brief What the models for shells have in common: a count, and rows by their roles' names.

    Qt::DecorationRole is announced as changed when the icons of rows, whose role is named iconSource,
    have been read in a thread; see icon(). */
class QUORVANE_SHELL_EXPORT ListModel : public QAbstractListModel
{
    Q_OBJECT

    /*! The number of rows. */
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    explicit ListModel(QObject *parent = nullptr);

    int count() const;

    /*! All roles of a row by their names; empty for a row that isn't there. */
    Q_INVOKABLE QVariantMap get(int row) const;

Q_SIGNALS:
    /*! Once for all that changed, after the rows' own signals. */
    void countChanged();

private:
    template<typename Rows>
    friend class RowWalk;
};

} // namespace quorvane
