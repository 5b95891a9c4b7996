#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifieritem.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include <QtDBus>
#include <QtWidgets>

using namespace xdg;

// An item with two values of wrong types, and no others.
class OddItem : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(int Title MEMBER _title)
    Q_PROPERTY(QString WindowId MEMBER _windowId)
    int _title = 42;
    QString _windowId = "42";
};

static QObject *makePeer(const QString &role)
{
    if (role == "watcher")
        return new StatusNotifierWatcher(qApp);
    if (role == "icon") {
        QPixmap red(16, 16);
        red.fill(Qt::red);
        auto *icon = new QSystemTrayIcon(red, qApp);
        const auto print = [](int reason) { QTextStream(stdout) << reason << '\n'; };
        QObject::connect(icon, &QSystemTrayIcon::activated, print);
        auto *menu = new QMenu;
        menu->addAction(icon->icon(), "&Red")->setShortcut(QKeySequence("Ctrl+R"));
        QMenu *more = menu->addMenu("More");
        QObject::connect(more, &QMenu::aboutToShow, [more] { more->addAction("Late"); });
        icon->setContextMenu(menu);
        icon->show();
        return icon;
    }
    if (role == "host") {
        auto *host = new StatusNotifierHost(qApp);
        const auto tryRow = [host](const QModelIndex &, int row) {
            QTextStream out(stdout);
            for (int value = 257; value <= 265; ++value)
                out << host->data(host->index(row), value).toString() << '|';
            out << Qt::endl;
            for (int mode : { 0, 1 })
                host->activate(3, 4, QCoreApplication::applicationName(), mode);
        };
        QObject::connect(host, &StatusNotifierHost::rowsInserted, tryRow);
        return host;
    }
    if (role == "odd")
        QDBusConnection::sessionBus().registerObject("/StatusNotifierItem", new OddItem,
                                                     QDBusConnection::ExportAllProperties);
    auto *item = new StatusNotifierItem(qApp);
    // Hosts are not told of this icon by the item itself.
    QObject::connect(item, &StatusNotifierItem::AttentionIconNameChanged, item,
                     &StatusNotifierItem::NewAttentionIcon);
    const auto print = [](const char *kind) {
        return [kind](uint x, uint y) { QTextStream(stdout) << kind << x << ' ' << y << '\n'; };
    };
    QObject::connect(item, &StatusNotifierItem::activated, print("first "));
    QObject::connect(item, &StatusNotifierItem::secondaryActivated, print("second "));
    return item;
}

// traypeer watcher|host|item|odd|icon NAME: one process of the tray. An icon is an item that knows
// nothing of this library; a host prints each new row and clicks on the items of its own NAME. Each
// line of the standard input sets a property (the name, a blank, the value).
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    application.setApplicationName(argv[2]);
    QObject *peer = makePeer(argv[1]);
    QTextStream(stdout) << "ready" << '\n';

    QFile input;
    input.open(0, QIODevice::ReadOnly | QIODevice::Unbuffered);
    QSocketNotifier notifier(0, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, peer, [&] {
        const QString line = input.readLine().trimmed();
        peer->setProperty(line.section(' ', 0, 0).toUtf8(), line.section(' ', 1));
        if (line.isEmpty())
            QCoreApplication::quit();
    });
    return QApplication::exec();
}

#include "traypeer.moc"
