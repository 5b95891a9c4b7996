#include "messages.h"
#include "patience.h"
#include "signallog.h"

#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifieritem.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>
#include <quorvane/statusnotifier/statusnotifierwatcherinterface.h>

#include <QSortFilterProxyModel>
#include <QtDBus>

using namespace xdg;

static const char watcherName[] = "org.kde.StatusNotifierWatcher";
static const char watcherPath[] = "/StatusNotifierWatcher";

// A process of the tray, running until the object goes.
struct Peer : QProcess
{
    explicit Peer(const QString &role, const QString &name = "peer")
    {
        setStandardErrorFile(nullDevice()); // A full pipe would stop it.
        start(TRAYPEER, { role, name });
        waitForReadyRead();
        readLine();
    }
    ~Peer() override { die(); }

    void die()
    {
        kill();
        waitForFinished();
    }
};

// Each row as the values of its roles.
static QStringList rows(const StatusNotifierHost &host)
{
    QStringList result;
    for (int row = 0; row < host.rowCount(); ++row) {
        result += QString();
        for (int role = 257; role <= 265; ++role)
            result.last() += host.data(host.index(row), role).toString() + '|';
    }
    return result;
}

// The first tests have all they need in this process, the others use a process for each of the
// tray's. A second connection to the bus stands for other programs.
class TestStatusNotifier : public QObject
{
    Q_OBJECT

    // A signal from a stranger's object at that path, once for each id.
    void _send(const QString &path, const QString &signal, const QStringList &ids)
    {
        const QString interface = QString(path).replace("/", "org.kde.");
        for (const QString &id : ids)
            _peer.send(QDBusMessage::createSignal(path, interface, signal) << id);
    }

    QDBusConnection _peer = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "peer");
    OrgKdeStatusNotifierWatcherInterface _watcher { watcherName, watcherPath, _peer };

private Q_SLOTS:
    void cleanup() // No watcher releases its name.
    {
        QDBusConnection::sessionBus().unregisterService(watcherName);
        QTRY_VERIFY(!_peer.interface()->isServiceRegistered(watcherName));
    }

    void settersEmitInOrder()
    {
        StatusNotifierItem item;
        SignalLog log({ &item });
        const auto check = [&](const char *name, const char *other, const QString &emitted,
                               const QString &value = "x") {
            item.setProperty(name, value);
            item.setProperty(other, value); // No change any more.
            QCOMPARE(log.take(), emitted);
            QCOMPARE(item.property(other).toString(), value);
        };
        check("category", "Category", "CategoryChanged", "Hardware");
        check("idItem", "Id", "IdChanged");
        check("title", "Title", "NewTitle, TitleChanged");
        check("status", "Status", "StatusChanged, NewStatus Passive", "Passive");
        check("windowId", "WindowId", "WindowIdChanged");
        check("iconName", "IconName", "IconNameChanged, NewIcon");
        check("overlayIconName", "OverlayIconName", "overlayIconNameChanged, NewOverlayIcon");
        check("attentionIconName", "AttentionIconName", "AttentionIconNameChanged");
        check("attentionMovieName", "AttentionMovieName", "AttentionMovieNameChanged");

        Messages messages;
        for (const char *status : { "NeedsAttention", "Active", "active" })
            item.setStatus(status);
        for (const char *category : { "Communications", "SystemServices", "hardware" })
            item.setCategory(category);
        QCOMPARE(item.Status() + item.Category(), QString("ActiveSystemServices"));
        QCOMPARE(messages.take(),
                 QStringList({ "xdg.system_tray warning: Status  \"active\" not authorized",
                               "xdg.system_tray warning: Category  \"hardware\" not authorized" }));
    }

    void busNameIsClaimedWithTheDebugLine()
    {
        QGuiApplication::setDesktopFileName("org.example.Editor");
        const QString pid = QString::number(QCoreApplication::applicationPid());
        for (const bool debug : { false, true }) {
            QLoggingCategory::setFilterRules(debug ? "" : "xdg.system_tray.debug=false");
            const StatusNotifierItem item;
            const StatusNotifierHost host;
            for (const char *name :
                 { "org.quorvane.org.example.Editor-", "org.kde.StatusNotifierHost-" })
                QCOMPARE(_peer.interface()->isServiceRegistered(name + pid).value(), debug);
        }
    }

    void watcherWithoutTheNameIsInert()
    {
        QVERIFY(_peer.registerService(watcherName));
        StatusNotifierWatcher watcher;
        QVERIFY(_peer.unregisterService(watcherName));
        watcher.RegisterStatusNotifierItem(_peer.baseService());
        watcher.RegisterStatusNotifierHost("host");
        QVERIFY(QMetaObject::invokeMethod(&watcher, "_serviceUnregistered", Q_ARG(QString, "a")));
        QVERIFY(watcher.RegisteredStatusNotifierItems().isEmpty());
        QVERIFY(!watcher.IsStatusNotifierHostRegistered());
    }

    void vanishedNameTakesItsItemButNotItsHost()
    {
        StatusNotifierWatcher watcher;
        QStringList left;
        const auto leave = [&](const QString &id) {
            left = QStringList(id) + watcher.RegisteredStatusNotifierItems();
            for (int i = 0; i < 50; ++i) { // The list may grow under its walk.
                _peer.registerService(QString("org.b%1").arg(i));
                watcher.RegisterStatusNotifierItem(QString("org.b%1").arg(i));
            }
        };
        connect(&watcher, &StatusNotifierWatcher::StatusNotifierItemUnregistered, this, leave);
        QSignalSpy hostLeft(&watcher, &StatusNotifierWatcher::StatusNotifierHostUnregistered);
        watcher.RegisterStatusNotifierItem("org.nobody");
        for (const char *name : { "org.a", "org.ab", "org.a" }) {
            _peer.registerService(name);
            watcher.RegisterStatusNotifierItem(name);
        }
        for (const char *host : { "org.a/Panel", "org.a/Dock", "org.a", "org.a/Dock" })
            watcher.RegisterStatusNotifierHost(host);
        _peer.unregisterService("org.a");
        QTRY_COMPARE(hostLeft.size(), 2); // Those with a path.
        QVERIFY(watcher.IsStatusNotifierHostRegistered());
        QCOMPARE(left, QStringList({ "org.a/StatusNotifierItem", "org.ab/StatusNotifierItem" }));
        QCOMPARE(watcher.RegisteredStatusNotifierItems().size(), 51);
        QCOMPARE(watcher.findChild<QDBusServiceWatcher *>()->watchedServices().size(), 53);
        QCOMPARE(hostLeft.size(), 2);

        // A name with a star stands for all that begin like it.
        for (const char *host : { "org.c*", "org.c.d/Panel", "org.c.d/Übung" })
            watcher.RegisterStatusNotifierHost(host);
        _peer.registerService("org.c.d");
        _peer.unregisterService("org.c.d");
        QTRY_COMPARE(hostLeft.size(), 4);
    }

    void rowsFollowTheItems()
    {
        Peer watcher("watcher");
        Peer a("item", "a");
        QTRY_COMPARE(_watcher.registeredStatusNotifierItems().size(), 1);
        StatusNotifierHost host; // An item that comes meanwhile would come twice.
        Peer b("item", "b");
        QTRY_COMPARE(rows(host), QStringList({ "ApplicationStatus|a||Active|0|||||",
                                               "ApplicationStatus|b||Active|0|||||" }));
        QCOMPARE(host.data(host.index(1), host.WindowIdRole).userType(), int(QMetaType::Int));

        QSignalSpy changes(&host, &StatusNotifierHost::dataChanged);
        const QString after = "Hardware|other|Titel für Ä|Passive|42|icon|over|attention|movie|";
        for (int i = 0; i < 9; ++i)
            b.write(host.roleNames().value(257 + i) + ' ' + after.section('|', i, i).toUtf8()
                    + '\n');
        QTRY_COMPARE(changes.size(), 5);
        QTRY_COMPARE(rows(host), QStringList({ "ApplicationStatus|a||Active|0|||||", after }));
        for (int role : { 259, 260, 262, 263, 264 }) {
            QCOMPARE(changes.first().first().toModelIndex(), host.index(1));
            QCOMPARE(changes.takeFirst().at(2).value<QVector<int>>(), QVector<int> { role });
        }

        // The one above goes; a change counts for the row of the item's arrival.
        a.die();
        QTRY_COMPARE(rows(host), QStringList(after));
        b.write("windowId 12 or so\ntitle new\n");
        QTRY_COMPARE(changes.size(), 1);
        QVERIFY(!changes.first().first().toModelIndex().isValid());
        QCOMPARE(rows(host),
                 QStringList("Hardware|other|new|Passive|0|icon|over|attention|movie|"));
        // Whoever owns the watcher's name next is heard as well.
        watcher.die();
        Peer next("watcher"), c("item", "c");
        QTRY_COMPARE(host.rowCount(), 2);
        QCOMPARE(rows(host).value(1), QString("ApplicationStatus|c||Active|0|||||"));
        QCOMPARE(host.findChildren<QDBusAbstractInterface *>().size(), 3); // The watcher's, too.
    }

    void itemsAnswerForThemselves()
    {
        Peer watcher("watcher");
        StatusNotifierHost host;
        Peer odd("odd");
        QTRY_COMPARE(rows(host), QStringList("||||0|||||"));
        QCOMPARE(host.data(host.index(0), host.TitleRole).userType(), int(QMetaType::QString));
        Peer first("item", "twin");
        QTRY_COMPARE(host.rowCount(), 2);
        Peer second("item", "twin");
        QTRY_COMPARE(host.rowCount(), 3);
        host.activate(1, -2, "twin", 0);
        host.activate(1, 2, "nobody", 0);
        host.activate(-3, 4, "twin", 1);
        host.activate(5, 6, "twin", 2);
        QByteArray clicks;
        QTRY_COMPARE(clicks += first.readAll(),
                     QByteArray("first 1 4294967294\nsecond 4294967293 4\nfirst 5 6\n"));
        QCOMPARE(second.readAll(), QByteArray());
    }

    void watcherOutlivesAFlood()
    {
        Peer watcher("watcher");
        {
            auto rude = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "rude");
            OrgKdeStatusNotifierWatcherInterface proxy(watcherName, watcherPath, rude);
            for (int i = 0; i < 2000; ++i)
                proxy.RegisterStatusNotifierItem(QString("org.example.flood%1").arg(i));
            proxy.RegisterStatusNotifierItem(rude.baseService());
            rude.interface()->isServiceRegistered(watcherName); // Now they are all on their way.
        }
        QDBusConnection::disconnectFromBus("rude");
        QCOMPARE(_watcher.protocolVersion(), 1);
        QTRY_COMPARE(_watcher.registeredStatusNotifierItems(), QStringList());
    }

    void hostOutlivesAHostileWatcher()
    {
        StatusNotifierHost host; // Before the name is taken: this process answers no call meanwhile.
        QVERIFY(_peer.registerService(watcherName));
        const QStringList ids {
            "",       "/",    "form", "Übung/x",           "a b/x", ":", ":1.999/x",
            "org.x'", "form", "form", QString(100000, 'a')
        };
        _send(watcherPath, "StatusNotifierItemRegistered", ids);
        QTRY_COMPARE(rows(host).count("||||0|||||"), 9); // One of them came three times.
        // Whoever says so, the rows without a service have a new title.
        QSignalSpy changes(&host, &StatusNotifierHost::dataChanged);
        _send("/StatusNotifierItem", "NewTitle", { QString() });
        QTRY_COMPARE(changes.size(), 2);
        host.activate(0, 0, "", 0);
        QVERIFY(!host.data(host.index(0), 266).isValid());
        const QModelIndexList stale { host.index(0), host.index(1), QModelIndex() };
        QSortFilterProxyModel view; // Has the nine rows, and not the two ids behind them.
        view.setSourceModel(&host);
        QCOMPARE(view.rowCount(), 9);
        QSignalSpy removals(&host, &StatusNotifierHost::rowsAboutToBeRemoved);
        _send(watcherPath, "StatusNotifierItemUnregistered",
              QStringList(ids.last()) + ids + QStringList("unknown"));
        QTRY_COMPARE(removals.size(), 13);
        // A row that is not counted goes from the end. Those of one id go together.
        QCOMPARE(removals.first().mid(1), QVariantList({ 9, 9 }));
        for (int i : { 9, 10, 11, 12 })
            QCOMPARE(removals.at(i).mid(1), QVariantList({ -1, -1 }));
        for (const QModelIndex &index : stale)
            QVERIFY(!host.data(index, host.IdRole).isValid());
        QVERIFY(_peer.unregisterService(watcherName));
    }
};

QTEST_GUILESS_MAIN(TestStatusNotifier)
#include "tst_statusnotifier.moc"
