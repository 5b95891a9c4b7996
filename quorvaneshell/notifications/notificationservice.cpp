#include "notificationservice_p.h"

#include "notificationlist_p.h"

#include <quorvane/quorvane_version.h>

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QGuiApplication>

namespace quorvane {

namespace {

void tell(const QString &program, const QString &signal, const QVariantList &arguments)
{
    if (program.isEmpty())
        return;
    QDBusMessage message = QDBusMessage::createTargetedSignal(
            program, QStringLiteral("/org/freedesktop/Notifications"), NotificationService::name(),
            signal);
    message.setArguments(arguments);
    QDBusConnection::sessionBus().send(message);
}

} // namespace

QString NotificationService::name()
{
    return QStringLiteral("org.freedesktop.Notifications");
}

NotificationService::NotificationService(NotificationList *list, QObject *server)
    : QDBusAbstractAdaptor(server)
    , _list(list)
{
    qDBusRegisterMetaType<NotificationHints>();
}

void NotificationService::tellClosed(const QString &program, uint id, uint reason) const
{
    tell(program, QStringLiteral("NotificationClosed"), { id, reason });
}

void NotificationService::tellInvoked(const QString &program, uint id, const QString &key) const
{
    tell(program, QStringLiteral("ActionInvoked"), { id, key });
}

QStringList NotificationService::GetCapabilities()
{
    return _list->capabilities();
}

QString NotificationService::GetServerInformation(QString &vendor, QString &version,
                                                  QString &spec_version)
{
    const auto either = [](const QString &text, const char *otherwise) {
        return text.isEmpty() ? QString::fromLatin1(otherwise) : text;
    };
    vendor = either(QCoreApplication::organizationName(), "ZOVAR");
    version = either(QCoreApplication::applicationVersion(), QUORVANE_VERSION_STRING);
    spec_version = QStringLiteral("1.2");
    return either(QGuiApplication::applicationDisplayName(), "Quorvane");
}

uint NotificationService::Notify(const QString &app_name, uint replaces_id, const QString &app_icon,
                                 const QString &summary, const QString &body,
                                 const QStringList &actions, const NotificationHints &hints,
                                 int timeout, const QDBusMessage &message)
{
    return _list->post({ app_name, replaces_id, app_icon, summary, body, actions, hints.values,
                         timeout, 0, message.service() });
}

void NotificationService::CloseNotification(uint id, const QDBusMessage &message)
{
    _list->closeFor(message.service(), id);
}

} // namespace quorvane
