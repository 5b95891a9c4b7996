#include <quorvaneshell/applications/applications.h>

#include <QGuiApplication>
#include <QTimer>

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    const quorvane::Applications applications;
    const auto end = [&applications] { QCoreApplication::exit(applications.count() > 0 ? 0 : 1); };
    QObject::connect(&applications, &quorvane::Applications::countChanged, end);
    QTimer::singleShot(applications.count() > 0 ? 0 : 20000, end);
    return QGuiApplication::exec();
}
