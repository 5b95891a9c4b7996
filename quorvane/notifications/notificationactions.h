#pragma once

#include <quorvane/quorvane_export.h>

#include <QAbstractListModel>
#include <QList>
#include <QPair>
#include <QStringList>

namespace xdg {

/*! \ingroup notifications
    \brief The actions of one notification as rows, for the buttons of a view.

    The notification protocol sends actions as one list in which keys and texts alternate. The
    application sets such a list, as it comes from the manager's role "actions" or from
    xdg::NotificationManager::listAction, and hands the key of the chosen row to
    xdg::NotificationManager::returnAction.

    | Role              | Name            | Value |
    |-------------------|-----------------|-------|
    | KeyRole          | \c key          | the key, \c QString |
    | ActionTextRole   | \c actionText   | the text to show, \c QString; also \c Qt::DisplayRole | */
class QUORVANE_EXPORT NotificationActions : public QAbstractListModel
{
    Q_OBJECT
    /*! The list as it was last set. */
    Q_PROPERTY(
            QStringList actionslist READ actionslist WRITE setActionslist NOTIFY actionslistChanged)

public:
    enum Role { KeyRole = Qt::UserRole + 1, ActionTextRole };

    explicit NotificationActions(QObject *parent = nullptr);

    /*! The list as it was last set, an odd last element included. */
    QStringList actionslist() const;

    /*! Makes rows of the pairs of \a actionslist: resets the model, then emits
        actionslistChanged(). An equal list changes nothing. The last element of a list of odd
        length makes no row; such a list gives a warning each time it is set. */
    void setActionslist(const QStringList &actionslist);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /*! Qt's standard names and the two of the table. */
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void actionslistChanged();

private:
    QList<QPair<QString, QString>> _actions;
    QStringList _actionslist;
};

} // namespace xdg
