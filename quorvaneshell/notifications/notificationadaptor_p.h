#pragma once

#include "notificationhints_p.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QStringList>

namespace quorvane {

class NotificationService;

// What programs see of a NotificationService as "org.freedesktop.Notifications". What becomes of a
// notification is told to the program that posted it and to no other: some take any id for theirs.
class NotificationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
    // As Qt would write it, but for the type of the hints, which is nobody else's business.
    Q_CLASSINFO("D-Bus Introspection",
                "  <interface name=\"org.freedesktop.Notifications\">\n"
                "    <signal name=\"NotificationClosed\">\n"
                "      <arg name=\"id\" type=\"u\"/>\n"
                "      <arg name=\"reason\" type=\"u\"/>\n"
                "    </signal>\n"
                "    <signal name=\"ActionInvoked\">\n"
                "      <arg name=\"id\" type=\"u\"/>\n"
                "      <arg name=\"action_key\" type=\"s\"/>\n"
                "    </signal>\n"
                "    <method name=\"Notify\">\n"
                "      <arg name=\"app_name\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"replaces_id\" type=\"u\" direction=\"in\"/>\n"
                "      <arg name=\"app_icon\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"summary\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"body\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"actions\" type=\"as\" direction=\"in\"/>\n"
                "      <arg name=\"hints\" type=\"a{sv}\" direction=\"in\"/>\n"
                "      <arg name=\"timeout\" type=\"i\" direction=\"in\"/>\n"
                "      <arg type=\"u\" direction=\"out\"/>\n"
                "      <annotation name=\"org.qtproject.QtDBus.QtTypeName.In6\""
                " value=\"QVariantMap\"/>\n"
                "    </method>\n"
                "    <method name=\"Inhibit\">\n"
                "      <arg name=\"desktop_entry\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"reason\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"hints\" type=\"a{sv}\" direction=\"in\"/>\n"
                "      <arg type=\"u\" direction=\"out\"/>\n"
                "      <annotation name=\"org.qtproject.QtDBus.QtTypeName.In2\""
                " value=\"QVariantMap\"/>\n"
                "    </method>\n"
                "    <method name=\"UnInhibit\">\n"
                "      <arg type=\"u\" direction=\"in\"/>\n"
                "    </method>\n"
                "    <property name=\"Inhibited\" type=\"b\" access=\"read\"/>\n"
                "    <method name=\"CloseNotification\">\n"
                "      <arg name=\"id\" type=\"u\" direction=\"in\"/>\n"
                "    </method>\n"
                "    <method name=\"GetCapabilities\">\n"
                "      <arg name=\"caps\" type=\"as\" direction=\"out\"/>\n"
                "    </method>\n"
                "    <method name=\"GetServerInformation\">\n"
                "      <arg name=\"name\" type=\"s\" direction=\"out\"/>\n"
                "      <arg name=\"vendor\" type=\"s\" direction=\"out\"/>\n"
                "      <arg name=\"version\" type=\"s\" direction=\"out\"/>\n"
                "      <arg name=\"spec_version\" type=\"s\" direction=\"out\"/>\n"
                "    </method>\n"
                "  </interface>\n")

    Q_PROPERTY(bool Inhibited READ isInhibited) // clazy:exclude=qproperty-without-notify

public:
    static QString name();

    NotificationAdaptor(NotificationService *service, QObject *exported);

    bool isInhibited() const;

public Q_SLOTS:
    QStringList GetCapabilities();
    // Tells of the shell: its application name, organization and version, where it has set them.
    QString GetServerInformation(QString &vendor, QString &version, QString &spec_version);
    uint Notify(const QString &app_name, uint replaces_id, const QString &app_icon,
                const QString &summary, const QString &body, const QStringList &actions,
                const quorvane::NotificationHints &hints, int timeout, const QDBusMessage &message);
    void CloseNotification(uint id, const QDBusMessage &message);
    // As some desktops have it: programs ask for silence, such as for a presentation.
    uint Inhibit(const QString &desktop_entry, const QString &reason,
                 const quorvane::NotificationHints &hints, const QDBusMessage &message);
    void UnInhibit(uint cookie, const QDBusMessage &message);

private:
    void _tellWhetherInhibited() const;

    NotificationService *const _service;
};

} // namespace quorvane
