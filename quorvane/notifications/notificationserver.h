#pragma once

#include <quorvane/quorvane_export.h>

#include <QObject>
#include <QStringList>
#include <QVariantMap>

/*! \ingroup notifications
    \brief The function that handles the \c Notify calls of an XdgNotificationServer.

    \a context is the object that was given to XdgNotificationServer::setNotify; the other arguments
    are those of the bus call. The result is the id that the caller gets. */
using NotifyFunction = uint(QObject *context, const QString &app_name, uint replaces_id,
                            const QString &app_icon, const QString &summary, const QString &body,
                            const QStringList &actions, const QVariantMap &hints, int timeout);

/*! \class NotificationsAdaptor
    \ingroup notifications
    The bus interface \c org.freedesktop.Notifications of an XdgNotificationServer, in the header
    \c quorvane/notifications/notificationsadaptor.h.

    It forwards each call from the bus to the slot of the same name and relays the server's signals
    \c ActionInvoked and \c NotificationClosed. It is created with the server as its parent, before
    the server is registered. */
class QUORVANE_EXPORT NotificationsAdaptor;

/*! \ingroup notifications
    \brief The object behind the bus interface \c org.freedesktop.Notifications, after the Desktop
    Notifications Specification 1.2.

    It keeps no notifications and hands out no ids. A \c Notify call goes to one function, a
    \c CloseNotification call comes out as the signal closeNotification(), and the owner answers
    through sendActionInvoked() and sendNotificationClosed(). xdg::NotificationManager is such an
    owner and complete; an application that keeps its notifications otherwise drives a server of its
    own, in this order:

    \code
    XdgNotificationServer server;
    server.setNotify(printNotification, nullptr);
    QObject::connect(&server, &XdgNotificationServer::closeNotification, &server,
                     [&server](uint id) { server.sendNotificationClosed(id, 3); });
    new NotificationsAdaptor(&server);
    XdgNotificationServer::RegisterServerToDbus(server);
    \endcode

    The whole, with its headers and its function, is examples/notificationprinter.cpp.

    The adaptor calls the four virtual slots, so a subclass that overrides one changes what the bus
    sees. All calls arrive on the thread of the server. */
class QUORVANE_EXPORT XdgNotificationServer : public QObject
{
    Q_OBJECT

public:
    explicit XdgNotificationServer(QObject *parent = nullptr);

    /*! Exports \a server under "/org/freedesktop/Notifications" of the session bus and claims the
        name "org.freedesktop.Notifications".

        Only adaptors are exported: the NotificationsAdaptor has to exist by now. A name that is
        taken gives a warning, a missing bus gives two, and the caller is not told otherwise. The
        name is asked for once and not watched. The server stays exported as long as it lives. */
    static void RegisterServerToDbus(XdgNotificationServer &server);

    /*! Makes \a notify, called with \a context, handle the \c Notify calls; a later call replaces
        both. The context is not owned and has to outlive the server or its last call. */
    void setNotify(NotifyFunction *notify, QObject *context);

    /*! Tells the bus that the user chose the action \a action_key of notification \a id. */
    void sendActionInvoked(uint id, const QString &action_key);

    /*! Tells the bus that notification \a id is closed, for one of the protocol's reasons: 1
        expired, 2 dismissed by the user, 3 closed by a call. Any other number goes out as it is. */
    void sendNotificationClosed(uint id, uint reason);

Q_SIGNALS:
    /*! A peer asked for notification \a id to be closed. The id is the peer's word and may be any
        number. Stays inside the process. */
    void closeNotification(uint id);

    /*! Goes out on the bus; emitted by sendActionInvoked(). */
    void ActionInvoked(uint id, const QString &action_key);

    /*! Goes out on the bus; emitted by sendNotificationClosed(). */
    void NotificationClosed(uint id, uint reason);

public Q_SLOTS:
    /*! Emits closeNotification() with \a id and does nothing else. */
    virtual void CloseNotification(uint id);

    /*! The optional features of the service: none. The list stays empty also where the owner does
        handle actions. */
    virtual QStringList GetCapabilities();

    /*! Returns the name of the service, which is empty, and sets \a vendor to "ZOVAR", \a version
        to "1.0.0" and \a spec_version, the version of the protocol, to "1.2". */
    virtual QString GetServerInformation(QString &vendor, QString &version, QString &spec_version);

    /*! Hands the call to the function of setNotify() and returns its result. Without a function
        the arguments go into one debug line, and the result is 0. */
    virtual uint Notify(const QString &app_name, uint replaces_id, const QString &app_icon,
                        const QString &summary, const QString &body, const QStringList &actions,
                        const QVariantMap &hints, int timeout);

private:
    NotifyFunction *_notify = nullptr;
    QObject *_context = nullptr;
};
