#include <quorvane/notifications/notifier.h>

#include <quorvane/notifications/notificationbus_p.h>
#include <quorvane/notifications/notificationsinterface.h>

#include <QDebug>
#include <QGuiApplication>

namespace {

QString closeText(uint reason)
{
    switch (reason) {
    case 1:
        return QStringLiteral("The notification expired.");
    case 2:
        return QStringLiteral("The notification was dismissed by the user.");
    case 3: // The leading blank belongs to the text.
        return QStringLiteral(" The notification was closed by a call to CloseNotification.");
    default:
        return QStringLiteral("Undefined/reserved reasons.");
    }
}

} // namespace

XdgNotifier::XdgNotifier(QObject *parent)
    : QObject(parent)
    // No parent: the proxy outlives the notifier.
    , _proxy(new OrgFreedesktopNotificationsInterface(
              notificationbus::service(), notificationbus::path(), notificationbus::sessionBus()))
{
    connect(_proxy, &OrgFreedesktopNotificationsInterface::ActionInvoked, this,
            &XdgNotifier::_actionInvoked);
    connect(_proxy, &OrgFreedesktopNotificationsInterface::NotificationClosed, this,
            &XdgNotifier::_notificationClosed);
}

// Outcomes are broadcast. They are passed on whoever posted, as no id is compared.
void XdgNotifier::_actionInvoked(uint id, const QString &action_key)
{
    qDebug() << "Recive signal ActionInvoked(" << id << ", " << action_key << ")";
    Q_EMIT actionInvoked(action_key);
}

void XdgNotifier::_notificationClosed(uint id, uint reason)
{
    qDebug() << "Recive signal NotificationClosed(" << id << ", " << reason << ")";
    Q_EMIT notificationClosed(closeText(reason));
}

void XdgNotifier::notifyTextOnly(QString summary, QString body, bool replace)
{
    qDebug() << "notifyTextOnly(" << summary << ", " << body << ")";
    _post(summary, body, replace, {}, -1);
}

void XdgNotifier::notifyWithActions(QString summary, QString body, bool replace, QStringList actions)
{
    _post(summary, body, replace, actions, -1);
}

void XdgNotifier::notify(const QString &summary, const QString &body, bool replace,
                         const QStringList &actions, int timeout)
{
    _post(summary, body, replace, actions, timeout);
}

void XdgNotifier::closeNotification()
{
    _proxy->CloseNotification(_id);
}

void XdgNotifier::_post(const QString &summary, const QString &body, bool replace,
                        const QStringList &actions, int timeout)
{
    QDBusPendingReply<uint> reply
            = _proxy->Notify(QGuiApplication::applicationDisplayName(), replace ? _id : 0,
                             QString(), summary, body, actions, QVariantMap(), timeout);
    reply.waitForFinished();
    // A failed post reads as 0. The number that answers a replacement is not looked at: services
    // differ in what they return there.
    if (!replace)
        _id = reply.value();
}
