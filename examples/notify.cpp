// Posts a notification and prints what comes of it:
//
//   notify "New mail" "From Anna" open Open later "Remind me later"

#include <quorvane/notifications/notifier.h>

#include <QGuiApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    // The notifier asks for the display name, and needs no display.
    QCoreApplication app(argc, argv);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Quorvane example"));

    const QStringList arguments = QCoreApplication::arguments().mid(1);
    QTextStream out(stdout);
    if (arguments.isEmpty() || arguments.first() == QLatin1String("--help")) {
        out << "usage: notify SUMMARY [BODY [KEY TEXT]...]\n";
        return arguments.isEmpty() ? 1 : 0;
    }

    // Outcomes are broadcast: what another program's notification comes to is heard as well, and
    // this example takes the first for its own.
    XdgNotifier notifier;
    QObject::connect(&notifier, &XdgNotifier::actionInvoked, &app, [&out](const QString &action) {
        out << "action: " << action << '\n';
        out.flush();
    });
    QObject::connect(&notifier, &XdgNotifier::notificationClosed, &app,
                     [&out](const QString &reason) {
                         out << reason.trimmed() << '\n';
                         out.flush();
                         QCoreApplication::quit();
                     });
    notifier.notifyWithActions(arguments.value(0), arguments.value(1), false, arguments.mid(2));
    return QCoreApplication::exec();
}
