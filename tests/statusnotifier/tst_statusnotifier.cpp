#include "messages.h"

#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifieritem.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>
#include <quorvane/statusnotifier/statusnotifierwatcherinterface.h>

#include <QSortFilterProxyModel>
#include <QtDBus>
#include <QtTest>

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

public Q_SLOTS:
    void record() { _emitted += sender()->metaObject()->method(senderSignalIndex()).name(); }

private Q_SLOTS:
    void cleanup() // No watcher releases its name.
    {
        QDBusConnection::sessionBus().unregisterService(watcherName);
        QTRY_VERIFY(!_peer.interface()->isServiceRegistered(watcherName));
    }
    void setterEmitsInOrder_data();
    void setterEmitsInOrder();
    void valueOutsideTheListIsRefused();
    void busNameIsClaimedWithTheDebugLine();
    void watcherWithoutTheNameIsInert();
    void vanishedNameTakesItsItemButNotItsHost();
    void rowsFollowTheItems();
    void itemsAnswerForThemselves();
    void hostHearsWhoeverOwnsTheName();
    void watcherOutlivesAFlood();
    void hostOutlivesAHostileWatcher();

private:
    void _recordSignals(QObject *object)
    {
        const QMetaObject *meta = object->metaObject();
        const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("record()"));
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            if (meta->method(i).methodType() == QMetaMethod::Signal)
                connect(object, meta->method(i), this, slot);
        }
        _emitted.clear();
    }

    // A signal from a stranger's object at that path, once for each id.
    void _send(const QString &path, const QString &signal, const QStringList &ids)
    {
        const QString interface = QString(path).replace("/", "org.kde.");
        for (const QString &id : ids)
            _peer.send(QDBusMessage::createSignal(path, interface, signal) << id);
    }

    QStringList _emitted;
    QDBusConnection _peer = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "peer");
    OrgKdeStatusNotifierWatcherInterface _watcher { watcherName, watcherPath, _peer };
};

void TestStatusNotifier::setterEmitsInOrder_data()
{
    QTest::addColumn<QString>("other");
    QTest::addColumn<QString>("emitted");
    const auto row = [](const char *name, const QString &other, const QString &emitted) {
        QTest::newRow(name) << other << emitted;
    };
    row("category", "Category", "CategoryChanged");
    row("idItem", "Id", "IdChanged");
    row("title", "Title", "NewTitle TitleChanged");
    row("status", "Status", "StatusChanged NewStatus");
    row("windowId", "WindowId", "WindowIdChanged");
    row("iconName", "IconName", "IconNameChanged NewIcon");
    row("overlayIconName", "OverlayIconName", "overlayIconNameChanged NewOverlayIcon");
    row("attentionIconName", "AttentionIconName", "AttentionIconNameChanged");
    row("attentionMovieName", "AttentionMovieName", "AttentionMovieNameChanged");
}

void TestStatusNotifier::setterEmitsInOrder()
{
    QFETCH(QString, other);
    const QString value = other == "Category" ? "Hardware" : "Passive";
    StatusNotifierItem item;
    _recordSignals(&item);
    item.setProperty(QTest::currentDataTag(), value);
    item.setProperty(other.toUtf8(), value); // No change any more.
    QTEST(_emitted.join(' '), "emitted");
    QCOMPARE(item.property(other.toUtf8()).toString(), value);
}

void TestStatusNotifier::valueOutsideTheListIsRefused()
{
    StatusNotifierItem item;
    _recordSignals(&item);
    Messages messages;
    for (const char *status : { "Passive", "NeedsAttention", "Active", "active" })
        item.setStatus(status);
    for (const char *category : { "Communications", "SystemServices", "Hardware", "" })
        item.setCategory(category);
    QCOMPARE(_emitted.size(), 9); // Two for a status, one for a category.
    QCOMPARE(item.Status() + item.Category(), QString("ActiveHardware"));
    QCOMPARE(messages.take(),
             QStringList({ "xdg.system_tray warning: Status  \"active\" not authorized",
                           "xdg.system_tray warning: Category  \"\" not authorized" }));
}

void TestStatusNotifier::busNameIsClaimedWithTheDebugLine()
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

void TestStatusNotifier::watcherWithoutTheNameIsInert()
{
    QVERIFY(_peer.registerService(watcherName));
    StatusNotifierWatcher watcher;
    QVERIFY(_peer.unregisterService(watcherName));
    watcher.RegisterStatusNotifierItem(_peer.baseService());
    watcher.RegisterStatusNotifierHost("host");
    QVERIFY(watcher.RegisteredStatusNotifierItems().isEmpty());
    QVERIFY(!watcher.IsStatusNotifierHostRegistered());
    QCOMPARE(watcher.ProtocolVersion(), 1);
    QVERIFY(!_peer.interface()->isServiceRegistered(watcherName));
}

void TestStatusNotifier::vanishedNameTakesItsItemButNotItsHost()
{
    StatusNotifierWatcher watcher;
    _recordSignals(&watcher);
    QStringList left;
    const auto leave = [&](const QString &id) {
        left = QStringList(id) + watcher.RegisteredStatusNotifierItems();
        for (int i = 0; i < 50; ++i) { // The list may grow under its walk.
            _peer.registerService(QString("org.b%1").arg(i));
            watcher.RegisterStatusNotifierItem(QString("org.b%1").arg(i));
        }
    };
    connect(&watcher, &StatusNotifierWatcher::StatusNotifierItemUnregistered, this, leave);
    for (const char *name : { "org.a", "org.ab", "org.a" }) {
        _peer.registerService(name);
        watcher.RegisterStatusNotifierItem(name);
    }
    for (const char *host : { "org.a/Panel", "org.a", "org.a/Panel" })
        watcher.RegisterStatusNotifierHost(host);
    _peer.unregisterService("org.a");
    QTRY_COMPARE(_emitted.count("StatusNotifierHostUnregistered"), 1); // The one with a path.
    QVERIFY(watcher.IsStatusNotifierHostRegistered());
    QCOMPARE(left, QStringList({ "org.a/StatusNotifierItem", "org.ab/StatusNotifierItem" }));
    QCOMPARE(watcher.RegisteredStatusNotifierItems().size(), 51);
    QCOMPARE(_emitted.size(), 2 + 1 + 50 + 1);
}

void TestStatusNotifier::rowsFollowTheItems()
{
    Peer watcher("watcher");
    Peer a("item", "a");
    QTRY_COMPARE(_watcher.registeredStatusNotifierItems().size(), 1);
    StatusNotifierHost host; // An item that comes meanwhile would come twice, by list and signal.
    QSortFilterProxyModel view;
    view.setSourceModel(&host);
    Peer b("item", "b");
    QTRY_COMPARE(rows(host), QStringList({ "ApplicationStatus|a||Active|0|||||",
                                           "ApplicationStatus|b||Active|0|||||" }));
    QCOMPARE(host.data(host.index(1), host.WindowIdRole).type(), QVariant::Int);

    QSignalSpy changes(&host, &StatusNotifierHost::dataChanged);
    const QString after = "Hardware|other|Titel für Ä|Passive|42|icon|over|attention|movie|";
    for (int i = 0; i < 9; ++i)
        b.write(host.roleNames().value(257 + i) + ' ' + after.section('|', i, i).toUtf8() + '\n');
    QTRY_COMPARE(changes.size(), 4);
    QTRY_COMPARE(rows(host), QStringList({ "ApplicationStatus|a||Active|0|||||", after }));
    for (int role : { 259, 260, 262, 263 }) {
        QCOMPARE(changes.first().first().toModelIndex(), host.index(1));
        QCOMPARE(changes.takeFirst().at(2).value<QVector<int>>(), QVector<int> { role });
    }

    // The one above goes and comes back; a change counts for the row of the item's arrival.
    a.die();
    QTRY_COMPARE(rows(host), QStringList(after));
    b.write("windowId 12 or so\ntitle new\n");
    QVERIFY(changes.wait());
    QVERIFY(!changes.first().first().toModelIndex().isValid());
    QCOMPARE(view.index(0, 0).data(host.TitleRole), QVariant("new"));
    Peer newA("item", "a");
    QTRY_COMPARE(rows(host),
                 QStringList({ "Hardware|other|new|Passive|0|icon|over|attention|movie|",
                               "ApplicationStatus|a||Active|0|||||" }));
}

void TestStatusNotifier::itemsAnswerForThemselves()
{
    Peer watcher("watcher");
    StatusNotifierHost host;
    Peer odd("odd");
    QTRY_COMPARE(rows(host), QStringList("||||0|||||"));
    Peer first("item", "twin");
    QTRY_COMPARE(host.rowCount(), 2);
    Peer second("item", "twin");
    QTRY_COMPARE(host.rowCount(), 3);

    // A click waits for the Id of the stopped item.
    QProcess::execute("sh", { "-c", "kill -STOP $0; (sleep 1; kill -CONT $0) &",
                              QString::number(first.processId()) });
    host.activate(1, -2, "twin", 0);
    host.activate(1, 2, "nobody", 0);
    host.activate(-3, 4, "twin", 1);
    host.activate(5, 6, "twin", 2);
    QByteArray clicks;
    QTRY_COMPARE(clicks += first.readAll(),
                 QByteArray("first 1 4294967294\nsecond 4294967293 4\nfirst 5 6\n"));
    QCOMPARE(second.readAll(), QByteArray());
}

void TestStatusNotifier::hostHearsWhoeverOwnsTheName()
{
    Peer watcher("watcher");
    StatusNotifierHost host;
    Peer item("item", "old");
    QTRY_COMPARE(host.rowCount(), 1);
    QSignalSpy changes(&host, &StatusNotifierHost::dataChanged);
    _send(watcherPath, "StatusNotifierItemRegistered", { _peer.baseService() });
    _send("/StatusNotifierItem", "NewStatus", { "Passive" });
    watcher.die();
    Peer next("watcher");
    QVERIFY(_watcher.registeredStatusNotifierItems().isEmpty());
    QVERIFY(!_watcher.isStatusNotifierHostRegistered());
    Peer newcomer("item", "new");
    QTRY_COMPARE(rows(host), QStringList({ "ApplicationStatus|old||Active|0|||||",
                                           "ApplicationStatus|new||Active|0|||||" }));
    QVERIFY(changes.isEmpty());
}

void TestStatusNotifier::watcherOutlivesAFlood()
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

void TestStatusNotifier::hostOutlivesAHostileWatcher()
{
    StatusNotifierHost host; // Before the name is taken: this process answers no call meanwhile.
    QVERIFY(_peer.registerService(watcherName));
    const QStringList ids { "",  "/",        "form",   "Übung/x", "a b/x",
                            ":", ":1.999/x", "org.x'", "form",    QString(100000, 'a') };
    _send(watcherPath, "StatusNotifierItemRegistered", ids);
    QTRY_COMPARE(rows(host).count("||||0|||||"), 9); // One of them came twice.
    host.activate(0, 0, "", 0);
    QVERIFY(!host.data(host.index(0), 266).isValid());
    const QModelIndexList stale { host.index(0), host.index(1), QModelIndex() };
    QSortFilterProxyModel view; // Knows the nine rows, and not the tenth id behind them.
    view.setSourceModel(&host);
    QCOMPARE(view.rowCount(), 9);
    QSignalSpy removals(&host, &StatusNotifierHost::rowsAboutToBeRemoved);
    _send(watcherPath, "StatusNotifierItemUnregistered",
          QStringList(ids.last()) + ids + QStringList("unknown"));
    QTRY_COMPARE(removals.size(), 11);
    // The second of two alike has gone with the first, and the last row was never counted.
    QCOMPARE(removals.at(9).mid(1) + removals.at(10).mid(1), QVariantList({ -1, -1, -1, -1 }));
    for (const QModelIndex &index : stale)
        QVERIFY(!host.data(index, host.IdRole).isValid());
    QVERIFY(_peer.unregisterService(watcherName));
}

QTEST_GUILESS_MAIN(TestStatusNotifier)
#include "tst_statusnotifier.moc"
