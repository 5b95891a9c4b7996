#include <quorvane/notifications/notifier.h>
#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifieritem.h>

#include <QCoreApplication>
#include <QDBusInterface>
#include <QDBusReply>
#include <QLoggingCategory>
#include <QTimer>

// Posts, replaces, lets expire, closes and chooses actions, one thing at each call.
static void useNotifications(XdgNotifier &notifier, QDBusInterface &manager)
{
    static int step = 0;
    const QString summary = QString("Message %1").arg(++step);
    const QStringList actions { "default", "Open", "reply", "Reply" };
    const QDBusReply<QList<uint>> pending = manager.call("listPending");
    const uint oldest = pending.value().value(0);
    switch (step % 8) {
    case 0:
        return notifier.notifyWithActions(summary, "With actions", false, actions);
    case 1:
        return notifier.notify(summary, "In the place of the one before", true, actions, 0);
    case 2:
        return notifier.notify(summary, "Leaves by itself", false, {}, 60);
    case 3:
        return notifier.notifyTextOnly(summary, QString(2000, 'x'), false);
    case 4:
        return notifier.closeNotification();
    case 5:
        manager.call("returnAction", oldest, "default");
        break;
    case 6:
        manager.call("listAction", oldest);
        manager.call("close", step); // Long gone, or never there.
        break;
    default:
        manager.call("close", oldest);
    }
}

// A tray item that doesn't stay as it is.
static void useItem(xdg::StatusNotifierItem &item)
{
    static int step = 0;
    item.setTitle(QString("Title %1").arg(++step));
    item.setIconName(QString("icon %1").arg(step));
    item.setStatus(step % 2 != 0 ? "NeedsAttention" : "Active");
}

// soak_peer sender|item|host: runs until it is killed.
int main(int argc, char **argv)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QLoggingCategory::setFilterRules("xdg.system_tray.debug=true");
    QCoreApplication application(argc, argv);
    QTimer timer;
    const QByteArray role = argv[argc - 1];
    if (role == "sender") {
        auto *notifier = new XdgNotifier(&application);
        auto *manager = new QDBusInterface(
                "com.zovar.NotificationManager", "/com/zovar/NotificationManager",
                "com.zovar.NotificationManager", QDBusConnection::sessionBus(), &application);
        QObject::connect(&timer, &QTimer::timeout, manager,
                         [=] { useNotifications(*notifier, *manager); });
    } else if (role == "item") {
        auto *item = new xdg::StatusNotifierItem(&application);
        QObject::connect(&timer, &QTimer::timeout, item, [=] { useItem(*item); });
    } else {
        new xdg::StatusNotifierHost(&application);
    }
    timer.start(40);
    return QCoreApplication::exec();
}
