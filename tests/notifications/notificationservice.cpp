// The notification service as a process of its own; ends when its standard input does.
//   notificationservice manager    xdg::NotificationManager
//   notificationservice bare       a server without a function for Notify, which logs the calls

#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notificationsadaptor.h>
#include <quorvane/notifications/notificationserver.h>

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    QObject service;
    if (QCoreApplication::arguments().value(1) == QLatin1String("manager")) {
        new xdg::NotificationManager(&service);
    } else {
        auto *server = new XdgNotificationServer(&service);
        new NotificationsAdaptor(server);
        XdgNotificationServer::RegisterServerToDbus(*server);
    }
    const QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
