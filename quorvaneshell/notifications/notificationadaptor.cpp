#include "notificationadaptor_p.h"

#include "notificationlist_p.h"
#include "notificationservice_p.h"

#include <quorvane/quorvane_version.h>

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QGuiApplication>

namespace quorvane {

namespace {

QString path()
{
    return QStringLiteral("/org/freedesktop/Notifications");
}

void tell(const QString &program, const QString &signal, const QVariantList &arguments)
{
    if (program.isEmpty())
        return;
    QDBusMessage message = QDBusMessage::createTargetedSignal(program, path(),
                                                              NotificationAdaptor::name(), signal);
    message.setArguments(arguments);
    QDBusConnection::sessionBus().send(message);
}

} // namespace

QString NotificationAdaptor::name()
{
    return QStringLiteral("org.freedesktop.Notifications");
}

NotificationAdaptor::NotificationAdaptor(NotificationService *service, QObject *exported)
    : QDBusAbstractAdaptor(exported)
    , _service(service)
{
    qDBusRegisterMetaType<NotificationHints>();
    const NotificationList *list = service->list();
    connect(list, &NotificationList::ended, this, [](const QString &sender, uint id, uint reason) {
        tell(sender, QStringLiteral("NotificationClosed"), { id, reason });
    });
    connect(list, &NotificationList::invoked, this,
            [](const QString &sender, uint id, const QString &action) {
                tell(sender, QStringLiteral("ActionInvoked"), { id, action });
            });
    connect(service, &NotificationService::inhibitedChanged, this,
            &NotificationAdaptor::_tellWhetherInhibited);
}

bool NotificationAdaptor::isInhibited() const
{
    return _service->isInhibited();
}

QStringList NotificationAdaptor::GetCapabilities()
{
    return _service->capabilities();
}

QString NotificationAdaptor::GetServerInformation(QString &vendor, QString &version,
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

uint NotificationAdaptor::Notify(const QString &app_name, uint replaces_id, const QString &app_icon,
                                 const QString &summary, const QString &body,
                                 const QStringList &actions, const NotificationHints &hints,
                                 int timeout, const QDBusMessage &message)
{
    return _service->post({ app_name, replaces_id, app_icon, summary, body, actions, hints, timeout,
                            0, message.service() });
}

void NotificationAdaptor::CloseNotification(uint id, const QDBusMessage &message)
{
    _service->list()->closeFor(message.service(), id);
}

uint NotificationAdaptor::Inhibit(const QString &desktop_entry, const QString &reason,
                                  const NotificationHints &, const QDBusMessage &message)
{
    const uint cookie = _service->inhibitions()->add(message.service(), desktop_entry, reason);
    if (cookie == 0) {
        message.setDelayedReply(true);
        QDBusConnection::sessionBus().send(message.createErrorReply(
                QDBusError::LimitsExceeded, QStringLiteral("Too many inhibitions")));
    }
    return cookie;
}

void NotificationAdaptor::UnInhibit(uint cookie, const QDBusMessage &message)
{
    _service->inhibitions()->remove(message.service(), cookie);
}

void NotificationAdaptor::_tellWhetherInhibited() const
{
    if (!_service->isRegistered())
        return;
    QDBusMessage message
            = QDBusMessage::createSignal(path(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                         QStringLiteral("PropertiesChanged"));
    message << name() << QVariantMap { { QStringLiteral("Inhibited"), isInhibited() } }
            << QStringList();
    QDBusConnection::sessionBus().send(message);
}

} // namespace quorvane
