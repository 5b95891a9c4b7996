#include <quorvane/notifications/notificationactions.h>

#include <quorvane/basedir/listtext_p.h>

#include <QDebug>

namespace xdg {

NotificationActions::NotificationActions(QObject *parent)
    : QAbstractListModel(parent)
{
}

QStringList NotificationActions::actionslist() const
{
    return _actionslist;
}

void NotificationActions::setActionslist(const QStringList &actionslist)
{
    if (actionslist.size() % 2 != 0)
        qWarning() << "Error in actionlist:" << ListText { actionslist };
    if (_actionslist == actionslist)
        return;

    _actionslist = actionslist;
    beginResetModel();
    _actions.clear();
    for (int i = 0; i < _actionslist.size() / 2; ++i)
        _actions.append({ _actionslist.at(2 * i), _actionslist.at(2 * i + 1) });
    endResetModel();
    Q_EMIT actionslistChanged();
}

int NotificationActions::rowCount(const QModelIndex & /*parent*/) const
{
    return _actions.size();
}

QVariant NotificationActions::data(const QModelIndex &index, int role) const
{
    // The row behind the last one passes, and reads as empty strings.
    if (index.row() > _actions.size())
        return {};
    const QPair<QString, QString> action = _actions.value(index.row());
    switch (role) {
    case KeyRole:
        return action.first;
    case ActionTextRole:
    case Qt::DisplayRole:
        return action.second;
    default:
        return {};
    }
}

QHash<int, QByteArray> NotificationActions::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractItemModel::roleNames();
    names.insert(KeyRole, "key");
    names.insert(ActionTextRole, "actionText");
    return names;
}

} // namespace xdg
