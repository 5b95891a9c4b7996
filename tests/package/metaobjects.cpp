// Prints what QML, QtDBus and string-based connections see of the library's classes: properties,
// signals, slots and their arguments, in declared order.

#include <quorvane/desktop/autostart.h>
#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/desktopfilter.h>
#include <quorvane/desktop/entry.h>
#include <quorvane/notifications/notificationactions.h>
#include <quorvane/notifications/notificationmanageradaptor.h>
#include <quorvane/notifications/notificationmessage.h>
#include <quorvane/notifications/notificationsadaptor.h>
#include <quorvane/notifications/notificationsinterface.h>
#include <quorvane/notifications/notifier.h>
#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifieritemadaptor.h>
#include <quorvane/statusnotifier/statusnotifieriteminterface.h>
#include <quorvane/statusnotifier/statusnotifierwatcheradaptor.h>
#include <quorvane/statusnotifier/statusnotifierwatcherinterface.h>

#include <QMetaMethod>
#include <QMetaProperty>

#include <cstdio>

namespace {

void print(const QMetaObject *metaObject)
{
    std::printf("%s : %s\n", metaObject->className(), metaObject->superClass()->className());
    for (int i = metaObject->classInfoOffset(); i < metaObject->classInfoCount(); ++i)
        std::printf("  %s: %s\n", metaObject->classInfo(i).name(), metaObject->classInfo(i).value());
    for (int i = metaObject->propertyOffset(); i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        std::printf("  property %s %s%s %s\n", property.typeName(), property.name(),
                    property.isWritable() ? ", writable," : "",
                    property.notifySignal().name().constData());
    }
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        const char *access = method.access() == QMetaMethod::Private ? "private" : "public";
        const char *kind = method.methodType() == QMetaMethod::Signal ? "signal" : "slot";
        std::printf("  %s %s %s %s, arguments: %s\n", access, kind, method.typeName(),
                    method.methodSignature().constData(),
                    method.parameterNames().join(' ').constData());
    }
}

template<typename... Classes>
void printAll()
{
    (print(&Classes::staticMetaObject), ...);
}

} // namespace

int main()
{
    printAll<xdg::Entry, xdg::Entries, xdg::DesktopEntries, xdg::DesktopFilter, xdg::AutoStart>();
    printAll<XdgNotificationServer, xdg::NotificationMessage, xdg::NotificationManager,
             NotificationManagerAdaptor, xdg::NotificationActions, XdgNotifier,
             NotificationsAdaptor, OrgFreedesktopNotificationsInterface>();
    printAll<xdg::StatusNotifierWatcher, StatusNotifierWatcherAdaptor, xdg::StatusNotifierItem,
             StatusNotifierItemAdaptor, xdg::StatusNotifierHost, OrgKdeStatusNotifierItemInterface,
             OrgKdeStatusNotifierWatcherInterface>();
}
