// The notification service as a process of its own; ends when its standard input does.

#include <quorvane/notifications/notificationmanager.h>

#include <QCoreApplication>
#include <QSocketNotifier>

#include <unistd.h>

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const xdg::NotificationManager manager;
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
