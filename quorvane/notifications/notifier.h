#pragma once

#include <quorvane/quorvane_export.h>

#include <QObject>
#include <QStringList>

/*! \class OrgFreedesktopNotificationsInterface
    \ingroup notifications
    The proxy of a service with the interface \c org.freedesktop.Notifications, for applications
    that need more of the protocol than XdgNotifier offers. Its calls don't wait, but for the form
    of \c GetServerInformation with three arguments. Its header is
    \c quorvane/notifications/notificationsinterface.h. */
class QUORVANE_EXPORT OrgFreedesktopNotificationsInterface;

/*! \ingroup notifications
    \brief Posts desktop notifications to whatever service owns "org.freedesktop.Notifications", and tells
    their outcome.

    \code
    XdgNotifier notifier;
    QObject::connect(&notifier, &XdgNotifier::actionInvoked, &app, [&out](const QString &action) {
        out << "action: " << action << '\n';
        out.flush();
    });
    \endcode

    A notifier remembers the id of the last notification that it posted without replacing one;
    closeNotification() and a post with \c replace speak of that id. It is 0 at first, which makes a
    post with \c replace a new notification, and it is kept when the notification closes.

    The posting slots block the calling thread until the service has answered, which takes Qt's
    D-Bus time-out of 25 seconds if the service hangs. A service of this process on the same
    connection is called directly, in the same thread too. A failed post is not reported. The
    application's display name goes along, \c QGuiApplication::applicationDisplayName, but neither
    icon nor hints.

    The service broadcasts outcomes, and a notifier doesn't filter them: both signals come for the
    notifications of every other program as well. */
class QUORVANE_EXPORT XdgNotifier : public QObject
{
    Q_OBJECT

public:
    /*! Connects to the service, whether or not it is there yet. Without a session bus there is a
        warning, and posts fail silently. The bus proxy stays alive when the notifier goes. */
    explicit XdgNotifier(QObject *parent = nullptr);

Q_SIGNALS:
    /*! Someone's notification had the action with the key \a action chosen. */
    void actionInvoked(QString action);

    /*! Someone's notification was closed; \a reason is an English sentence.

        | Reason | Sentence |
        |--------|----------|
        | 1      | "The notification expired." |
        | 2      | "The notification was dismissed by the user." |
        | 3      | " The notification was closed by a call to CloseNotification.", with the blank |
        | other  | "Undefined/reserved reasons." | */
    void notificationClosed(QString reason);

private Q_SLOTS:
    void _actionInvoked(uint id, const QString &action_key);
    void _notificationClosed(uint id, uint reason);

public Q_SLOTS:
    /*! Posts without actions, leaving the time-out to the service. \a replace puts it in the place
        of the remembered notification. */
    void notifyTextOnly(QString summary, QString body, bool replace);

    /*! Posts with \a actions, keys and texts alternating, leaving the time-out to the service. */
    void notifyWithActions(QString summary, QString body, bool replace, QStringList actions);

    /*! Posts with \a actions and a time-out in milliseconds: 0 for a notification that stays, -1
        for the service's choice. */
    void notify(const QString &summary, const QString &body, bool replace,
                const QStringList &actions, int timeout);

    /*! Asks the service to close the remembered notification; doesn't wait. */
    void closeNotification();

private:
    void _post(const QString &summary, const QString &body, bool replace,
               const QStringList &actions, int timeout);

    OrgFreedesktopNotificationsInterface *_proxy;
    uint _id = 0;
};
