#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifieritem.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFile>
#include <QSocketNotifier>
#include <QTextStream>

#include <memory>

// An item with values of wrong types and without a status.
class OddItem : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(int Title MEMBER _title)
    Q_PROPERTY(QString WindowId MEMBER _windowId)
    int _title = 42;
    QString _windowId = "42";
};

static std::unique_ptr<QObject> makePeer(const QString &role)
{
    if (role == "watcher")
        return std::make_unique<xdg::StatusNotifierWatcher>();
    if (role == "host")
        return std::make_unique<xdg::StatusNotifierHost>();
    auto item = std::make_unique<xdg::StatusNotifierItem>();
    QObject::connect(item.get(), &xdg::StatusNotifierItem::activated,
                     [](uint x, uint y) { QTextStream(stdout) << x << ',' << y << " first\n"; });
    QObject::connect(item.get(), &xdg::StatusNotifierItem::secondaryActivated,
                     [](uint x, uint y) { QTextStream(stdout) << x << ',' << y << " second\n"; });
    return item;
}

// traypeer watcher|host|item|odd NAME: one process of the tray. Each line of its standard input
// sets a property: the name, a blank, the value.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    application.setApplicationName(argv[2]);
    OddItem odd;
    if (argv[1] == QByteArray("odd"))
        QDBusConnection::sessionBus().registerObject("/StatusNotifierItem", &odd,
                                                     QDBusConnection::ExportAllProperties);
    const std::unique_ptr<QObject> peer = makePeer(argv[1]);
    QTextStream(stdout) << "ready\n";

    QFile input;
    input.open(0, QIODevice::ReadOnly | QIODevice::Unbuffered);
    QSocketNotifier notifier(0, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, peer.get(), [&] {
        const QString line = input.readLine().trimmed();
        peer->setProperty(line.section(' ', 0, 0).toUtf8(), line.section(' ', 1));
        if (line.isEmpty())
            QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}

#include "traypeer.moc"
