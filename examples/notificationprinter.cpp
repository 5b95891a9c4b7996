// A notification service of its own kind: it keeps nothing and prints what is posted.

#include <quorvane/notifications/notificationsadaptor.h>
#include <quorvane/notifications/notificationserver.h>

#include <QCoreApplication>
#include <QTextStream>

namespace {

uint printNotification(QObject *, const QString &app_name, uint, const QString &,
                       const QString &summary, const QString &, const QStringList &,
                       const QVariantMap &, int)
{
    static uint lastId = 0;
    QTextStream(stdout) << app_name << ": " << summary << Qt::endl;
    return ++lastId;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);

    XdgNotificationServer server;
    server.setNotify(printNotification, nullptr);
    QObject::connect(&server, &XdgNotificationServer::closeNotification, &server,
                     [&server](uint id) { server.sendNotificationClosed(id, 3); });
    new NotificationsAdaptor(&server);
    XdgNotificationServer::RegisterServerToDbus(server);

    return QCoreApplication::exec();
}
