#pragma once

#include <quorvane/quorvane_export.h>

#include <QAbstractListModel>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

class XdgNotificationServer;

/*! \class NotificationManagerAdaptor
    \ingroup notifications
    The bus interface \c com.zovar.NotificationManager of an xdg::NotificationManager, by which
    another process shows, answers and closes what is pending. It has no signals. Its header is
    \c quorvane/notifications/notificationmanageradaptor.h. */
class QUORVANE_EXPORT NotificationManagerAdaptor;

namespace xdg {

class NotificationMessage;

/*! Posts a notification to the manager \a context, as a \c Notify call from the bus does.

    A \a replaces_id that is pending updates that notification in place, and the result is the id
    that was handed out last, whichever notification was replaced. Any other \a replaces_id makes a
    new notification in row 0 and gives its id, counted from 1. \a timeout is in milliseconds, 0 or
    less for a notification that stays. A context that is no xdg::NotificationManager gives 0. */
QUORVANE_EXPORT uint serverNotify(QObject *context, const QString &app_name, uint replaces_id,
                                  const QString &app_icon, const QString &summary,
                                  const QString &body, const QStringList &actions,
                                  const QVariantMap &hints, int timeout);

/*! \ingroup notifications
    \brief The notification service of a session, and the list of what is pending, newest first.

    Constructing one is all that is needed: it claims "org.freedesktop.Notifications", for any
    program that posts, and "com.zovar.NotificationManager", for programs that answer. Whoever shows
    the rows calls returnAction() when the user chose an action and close() when the user dismissed
    the notification.

    | Role           | Name         | Value |
    |----------------|--------------|-------|
    | AppNameRole   | \c appName   | the application's display name, \c QString; also \c Qt::DisplayRole |
    | AppIconRole   | \c appIcon   | icon name or file URL, \c QString |
    | SummaryRole   | \c summary   | the title, \c QString |
    | BodyRole      | \c body      | the text, \c QString |
    | ActionsRole   | \c actions   | keys and texts alternating, \c QStringList; see xdg::NotificationActions |
    | HintsRole     | \c hints     | the hints by name, \c QVariantMap |
    | AppIdRole     | \c appId     | the id of the notification, \c uint |

    Every operation speaks of ids, and only the model of rows. Ids are counted up from 1 and not
    used again.

    Two announcements of the model don't tell a row that holds. Closing an id that is not pending
    announces the removal of row -1, and a change of a notification is reported for the row of its
    first \c replaces_id, mostly row 0, wherever it stands by then. Put a \c QSortFilterProxyModel
    between the manager and a view: it drops such removals, and the rows stay right.

    The manager owns its messages and its server. When it is destroyed nothing is said on the bus
    about what is still pending. */
class QUORVANE_EXPORT NotificationManager : public QAbstractListModel
{
    Q_OBJECT
    /*! The number of pending notifications. */
    Q_PROPERTY(int nbNotifications READ nbNotifications NOTIFY notificationsChanged)

public:
    enum Role {
        AppNameRole = Qt::UserRole + 1,
        AppIconRole,
        SummaryRole,
        BodyRole,
        ActionsRole,
        HintsRole,
        AppIdRole
    };

    /*! Creates the service and registers it, and works as a model also where that fails.

        If "org.freedesktop.Notifications" is taken, a warning says so, and
        "com.zovar.NotificationManager" is claimed all the same; if that one is taken, nothing says
        so. Without a bus there are three warnings. */
    explicit NotificationManager(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;

    /*! The value of a role; invalid for a role that is not in the table and for a row that is not
        there. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /*! Qt's standard names and the seven of the table. */
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    /*! Follows each insertion and each removal, that of row -1 included. */
    void notificationsChanged();

public Q_SLOTS:
    /*! The number of pending notifications. */
    int nbNotifications();

    /*! Takes notification \a id out of the list and tells the bus that it is closed, for
        \a reason: 1 expired, 2 dismissed by the user, 3 closed by a call, or any other number.

        The message is deleted by the event loop. For an id that is not pending the bus hears the
        same, and the model announces the removal of row -1. */
    void close(uint id, uint reason = 2);

    /*! Tells the bus that the action \a key of notification \a appid was chosen, then closes the
        notification with reason 2. Neither is compared with what is pending. */
    void returnAction(uint appid, const QString &key);

    /*! The pending ids in ascending order: oldest first, against the order of the rows. */
    QList<uint> listPending() const; // clazy:exclude=const-signal-or-slot

    /*! The actions of notification \a id, keys and texts alternating; empty for an id that is not
        pending. */
    QStringList listAction(uint id) const; // clazy:exclude=const-signal-or-slot

private Q_SLOTS:
    void _closeNotification(uint id);

private:
    friend uint serverNotify(QObject *context, const QString &app_name, uint replaces_id,
                             const QString &app_icon, const QString &summary, const QString &body,
                             const QStringList &actions, const QVariantMap &hints, int timeout);

    void _watch(NotificationMessage *message, uint row);

    XdgNotificationServer *_server;
    uint _lastId = 0;
    QMap<uint, NotificationMessage *> _notifications;
    QList<uint> _pending; // In the order of the rows.
};

} // namespace xdg
