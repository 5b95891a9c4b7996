#include <quorvane/notifications/notificationmanager.h>

#include <quorvane/notifications/notificationbus_p.h>
#include <quorvane/notifications/notificationmanageradaptor.h>
#include <quorvane/notifications/notificationmessage.h>
#include <quorvane/notifications/notificationsadaptor.h>
#include <quorvane/notifications/notificationserver.h>

#include <QDBusConnection>

namespace xdg {

uint serverNotify(QObject *context, const QString &app_name, uint replaces_id,
                  const QString &app_icon, const QString &summary, const QString &body,
                  const QStringList &actions, const QVariantMap &hints, int timeout)
{
    auto *manager = qobject_cast<NotificationManager *>(context);
    if (!manager)
        return 0;

    if (replaces_id != 0 && manager->_notifications.contains(replaces_id)) {
        manager->_notifications.value(replaces_id)
                ->update(app_name, app_icon, summary, body, actions, hints, timeout);
        // The id handed out last, also when an older notification was replaced.
        return manager->_lastId;
    }

    auto *message = new NotificationMessage(app_name, app_icon, summary, body, actions, hints,
                                            timeout, manager);
    manager->_watch(message, replaces_id);

    manager->beginInsertRows(QModelIndex(), 0, 0);
    const uint id = ++manager->_lastId;
    manager->_notifications.insert(id, message);
    message->setId(id);
    manager->_pending.prepend(id);
    manager->endInsertRows();
    return manager->_lastId;
}

NotificationManager::NotificationManager(QObject *parent)
    : QAbstractListModel(parent)
    , _server(new XdgNotificationServer(this))
{
    _server->setNotify(serverNotify, this);
    connect(_server, &XdgNotificationServer::closeNotification, this,
            &NotificationManager::_closeNotification);
    connect(this, &QAbstractItemModel::rowsRemoved, this,
            &NotificationManager::notificationsChanged);
    connect(this, &QAbstractItemModel::rowsInserted, this,
            &NotificationManager::notificationsChanged);

    new NotificationsAdaptor(_server);
    XdgNotificationServer::RegisterServerToDbus(*_server);

    new NotificationManagerAdaptor(this);
    QDBusConnection bus = notificationbus::sessionBus();
    if (bus.isConnected()) {
        bus.registerObject(QStringLiteral("/com/zovar/NotificationManager"), this,
                           QDBusConnection::ExportAdaptors);
        bus.registerService(QStringLiteral("com.zovar.NotificationManager"));
    }
}

int NotificationManager::rowCount(const QModelIndex & /*parent*/) const
{
    return _pending.size();
}

QVariant NotificationManager::data(const QModelIndex &index, int role) const
{
    // The row behind the last one passes, and finds no message.
    if (index.row() > _pending.size())
        return {};
    const NotificationMessage *message = _notifications.value(_pending.value(index.row()));
    if (!message)
        return {};

    switch (role) {
    case Qt::DisplayRole:
    case AppNameRole:
        return message->appName();
    case AppIconRole:
        return message->appIcon();
    case SummaryRole:
        return message->summary();
    case BodyRole:
        return message->body();
    case ActionsRole:
        return message->actions();
    case HintsRole:
        return message->hints();
    case AppIdRole:
        return message->id();
    default:
        return {};
    }
}

QHash<int, QByteArray> NotificationManager::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractItemModel::roleNames();
    names.insert(AppNameRole, "appName");
    names.insert(AppIconRole, "appIcon");
    names.insert(SummaryRole, "summary");
    names.insert(BodyRole, "body");
    names.insert(ActionsRole, "actions");
    names.insert(HintsRole, "hints");
    names.insert(AppIdRole, "appId");
    return names;
}

int NotificationManager::nbNotifications()
{
    return rowCount(QModelIndex());
}

void NotificationManager::close(uint id, uint reason)
{
    // An id that is not pending goes the same way: the removal of row -1 is announced, and the bus
    // hears that the id is closed. Peers that wait for that signal never wait in vain.
    const int row = _pending.indexOf(id);
    beginRemoveRows(QModelIndex(), row, row);
    _pending.removeAll(id);
    if (auto *message = _notifications.take(id))
        message->deleteLater();
    endRemoveRows();
    _server->sendNotificationClosed(id, reason);
}

void NotificationManager::returnAction(uint appid, const QString &key)
{
    _server->sendActionInvoked(appid, key);
    close(appid, 2);
}

QList<uint> NotificationManager::listPending() const
{
    return _notifications.keys();
}

QStringList NotificationManager::listAction(uint id) const
{
    const NotificationMessage *message = _notifications.value(id);
    return message ? message->actions() : QStringList();
}

void NotificationManager::_closeNotification(uint id)
{
    close(id, 3);
}

// The row is fixed here, on purpose: a change is reported for it wherever the message stands by
// then. A view that has to be exact reads its rows again on dataChanged.
void NotificationManager::_watch(NotificationMessage *message, uint row)
{
    const auto report = [this, message, row](auto signal, int role) {
        connect(
                message, signal, message,
                [this, row, role] { Q_EMIT dataChanged(index(row, 0), index(row, 0), { role }); },
                Qt::DirectConnection);
    };
    report(&NotificationMessage::appNameChanged, AppNameRole);
    report(&NotificationMessage::appIconChanged, AppIconRole);
    report(&NotificationMessage::summaryChanged, SummaryRole);
    report(&NotificationMessage::bodyChanged, BodyRole);
    report(&NotificationMessage::actionsChanged, ActionsRole);
    report(&NotificationMessage::hintsChanged, HintsRole);

    // A message that was closed and not deleted yet is no longer in the map: its expiry closes
    // id 0, which the bus hears as well.
    connect(
            message, &NotificationMessage::expired, message,
            [this](QObject *object) {
                if (auto *expired = qobject_cast<NotificationMessage *>(object))
                    close(_notifications.key(expired), 1);
            },
            Qt::DirectConnection);
}

} // namespace xdg
