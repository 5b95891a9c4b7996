#include "messages.h"

#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifieritem.h>
#include <quorvane/statusnotifier/statusnotifieritemadaptor.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include <QtDBus>
#include <QtTest>

#include <csignal>

using xdg::StatusNotifierItem;
using xdg::StatusNotifierWatcher;

static const char watcherName[] = "org.kde.StatusNotifierWatcher";

struct ClickCounter : StatusNotifierItem
{
    void Activate(uint x, uint y) override { clicks += { x, y }; }
    QVector<uint> clicks;
};

// Items and a watcher in this process; a second connection is their peers.
class TestStatusNotifier : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void record() { _emitted += sender()->metaObject()->method(senderSignalIndex()).name(); }

private Q_SLOTS:
    void setterEmitsInOrder_data();
    void setterEmitsInOrder();
    void refusedValueWarns();
    void adaptorConvertsNumbers();
    void busNameIsClaimedWithTheDebugLine();
    void busNameIsMadeOfTheFirstId();
    void watcherWithoutTheNameIsInert();
    void itemIsListedUntilItsNameVanishes();
    void hostOfAPlainNameNeverLeaves();
    void callsAfterTheBusIsGoneAreHarmless();

private:
    void _recordSignals(QObject *object);

    QStringList _emitted;
    QDBusConnection _peer = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "peer");
    QDBusConnectionInterface *_bus = QDBusConnection::sessionBus().interface();
    const QString _pid = QString::number(QCoreApplication::applicationPid());
};

void TestStatusNotifier::_recordSignals(QObject *object)
{
    const QMetaObject *meta = object->metaObject();
    const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("record()"));
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        if (meta->method(i).methodType() == QMetaMethod::Signal)
            connect(object, meta->method(i), this, slot);
    }
    _emitted.clear();
}

Q_DECLARE_METATYPE(const QMetaObject *)

void TestStatusNotifier::setterEmitsInOrder_data()
{
    QTest::addColumn<QString>("other");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("emitted");

    QTest::newRow("category") << "Category"
                              << "Hardware"
                              << "CategoryChanged";
    QTest::newRow("idItem") << "Id"
                            << "x"
                            << "IdChanged";
    QTest::newRow("title") << "Title"
                           << "x"
                           << "NewTitle TitleChanged";
    QTest::newRow("status") << "Status"
                            << "Passive"
                            << "StatusChanged NewStatus";
    QTest::newRow("windowId") << "WindowId"
                              << "x"
                              << "WindowIdChanged";
    QTest::newRow("iconName") << "IconName"
                              << "x"
                              << "IconNameChanged NewIcon";
    QTest::newRow("overlayIconName") << "OverlayIconName"
                                     << "x"
                                     << "overlayIconNameChanged NewOverlayIcon";
    QTest::newRow("attentionIconName") << "AttentionIconName"
                                       << "x"
                                       << "AttentionIconNameChanged";
    QTest::newRow("attentionMovieName") << "AttentionMovieName"
                                        << "x"
                                        << "AttentionMovieNameChanged";
}

void TestStatusNotifier::setterEmitsInOrder()
{
    QFETCH(QString, other);
    QFETCH(QString, value);
    StatusNotifierItem item;
    _recordSignals(&item);
    item.setProperty(QTest::currentDataTag(), value);
    QTEST(_emitted.join(' '), "emitted");
    item.setProperty(other.toUtf8(), value);
    QTEST(_emitted.join(' '), "emitted");
    QCOMPARE(item.property(other.toUtf8()).toString(), value);
}

void TestStatusNotifier::refusedValueWarns()
{
    StatusNotifierItem item;
    _recordSignals(&item);
    Messages messages;
    item.setStatus("active");
    item.setCategory("");
    QCOMPARE(messages.take(),
             QStringList({ "xdg.system_tray warning: Status  \"active\" not authorized",
                           "xdg.system_tray warning: Category  \"\" not authorized" }));
    QCOMPARE(item.Status() + item.Category(), QString("ActiveApplicationStatus"));
    QVERIFY(_emitted.isEmpty());
}

void TestStatusNotifier::adaptorConvertsNumbers()
{
    ClickCounter item;
    QSignalSpy secondary(&item, &StatusNotifierItem::secondaryActivated);
    auto *adaptor = item.findChild<StatusNotifierItemAdaptor *>();
    adaptor->Activate(-1, 2);
    adaptor->SecondaryActivate(3, -4);
    QCOMPARE(item.clicks, QVector<uint>({ 0xffffffffu, 2u }));
    QCOMPARE(secondary, QList<QVariantList>({ { 3u, 0xfffffffcu } }));
    item.setWindowId("12");
    QCOMPARE(adaptor->windowId(), 12);
    item.setWindowId("12 or so");
    QCOMPARE(adaptor->windowId(), 0);
}

void TestStatusNotifier::busNameIsClaimedWithTheDebugLine()
{
    QCoreApplication::setApplicationName("quiet");
    const QString itemName = "org.quorvane.quiet-" + _pid;
    const QString hostName = "org.kde.StatusNotifierHost-" + _pid;
    Messages messages;
    for (const bool debug : { false, true }) {
        QLoggingCategory::setFilterRules(debug ? "" : "xdg.system_tray.debug=false");
        const StatusNotifierItem item;
        const xdg::StatusNotifierHost host;
        QCOMPARE(_bus->isServiceRegistered(itemName).value(), debug);
        QCOMPARE(_bus->isServiceRegistered(hostName).value(), debug);
    }
    const QString warning = "xdg.system_tray warning: Can't find watcher "
                            "org.kde.StatusNotifierWatcher/StatusNotifierWatcher";
    QCOMPARE(messages.take(),
             QStringList(
                     { warning,
                       "xdg.system_tray debug: Register Item service \"" + itemName + "\" : true",
                       "xdg.system_tray debug: Register Host service \"" + hostName + "\" : true",
                       "xdg.system_tray debug: Find Watcher  false  with protocol  0", warning }));
}

void TestStatusNotifier::busNameIsMadeOfTheFirstId()
{
    QCoreApplication::setApplicationName("Übung");
    Messages messages;
    StatusNotifierItem refused;
    refused.setId("other");
    QGuiApplication::setDesktopFileName("org.example.Editor");
    StatusNotifierItem item;
    QGuiApplication::setDesktopFileName(QString());
    QCOMPARE(item.Id(), QString("org.example.Editor"));
    const QString line
            = "xdg.system_tray debug: Register Item service \"org.quorvane.%1-" + _pid + "\" : ";
    QCOMPARE(messages.take(),
             QStringList({ line.arg("Übung") + "false", line.arg(item.Id()) + "true" }));
}

void TestStatusNotifier::watcherWithoutTheNameIsInert()
{
    QVERIFY(_peer.registerService(watcherName));
    Messages messages;
    StatusNotifierWatcher watcher;
    QCOMPARE(messages.take(), QStringList("xdg.system_tray warning: Don't register "
                                          "StatusNotifierWatcher service, probably "
                                          "already exists"));
    QVERIFY(_peer.unregisterService(watcherName));
    watcher.RegisterStatusNotifierItem(_peer.baseService());
    watcher.RegisterStatusNotifierHost("host");
    QVERIFY(watcher.RegisteredStatusNotifierItems().isEmpty());
    QVERIFY(!watcher.IsStatusNotifierHostRegistered());
    QCOMPARE(watcher.ProtocolVersion(), 1);
    QVERIFY(!_bus->isServiceRegistered(watcherName));
}

void TestStatusNotifier::itemIsListedUntilItsNameVanishes()
{
    StatusNotifierWatcher watcher;
    QStringList ids;
    QStringList whenLeft;
    connect(&watcher, &StatusNotifierWatcher::StatusNotifierItemUnregistered, this, [&] {
        whenLeft = watcher.RegisteredStatusNotifierItems();
        for (int i = 0; i < 50; ++i) { // The list may grow under its walk.
            _peer.registerService(QString("org.b%1").arg(i));
            watcher.RegisterStatusNotifierItem(QString("org.b%1").arg(i));
        }
    });
    for (const char *text : { "org.a", "org.ab" }) {
        const QString name = text;
        Messages messages;
        QVERIFY(_peer.registerService(name));
        watcher.RegisterStatusNotifierItem(name);
        watcher.RegisterStatusNotifierItem(name);
        ids += name + "/StatusNotifierItem";
        QCOMPARE(watcher.RegisteredStatusNotifierItems(), ids);
        const QString call
                = "xdg.system_tray debug: Watcher: RegisterStatusNotifierItem( \"" + name + "\" )";
        QCOMPARE(messages.take(),
                 QStringList({ call,
                               "default debug: Registering \"" + ids.last() + "\" to system tray",
                               call }));
    }
    _recordSignals(&watcher);
    QSignalSpy left(&watcher, &StatusNotifierWatcher::StatusNotifierItemUnregistered);
    Messages messages;
    QVERIFY(_peer.unregisterService("org.a"));
    QVERIFY(left.wait());
    QCOMPARE(left, QList<QVariantList>({ { ids.first() } }));
    QCOMPARE(whenLeft, QStringList(ids.last()));
    QCOMPARE(watcher.RegisteredStatusNotifierItems().size(), 51);
    QCOMPARE(_emitted.count("StatusNotifierItemRegistered"), 50);
    QCOMPARE(_emitted.size(), 51);
    QCOMPARE(messages.take().value(0),
             "xdg.system_tray debug: Service  \"org.a\" unregistered (ITEMS: (\""
                     + ids.join("\", \"") + "\")  HOSTS: () )");
}

void TestStatusNotifier::hostOfAPlainNameNeverLeaves()
{
    StatusNotifierWatcher watcher;
    _recordSignals(&watcher);
    QVERIFY(_peer.registerService("org.host"));
    for (const char *host : { "org.host/Panel", "org.host", "org.host" })
        watcher.RegisterStatusNotifierHost(host);
    QVERIFY(watcher.IsStatusNotifierHostRegistered());
    QVERIFY(_peer.unregisterService("org.host"));
    QTRY_COMPARE(_emitted, QStringList("StatusNotifierHostUnregistered")); // The one with a path.
    QVERIFY(watcher.IsStatusNotifierHostRegistered());
}

void TestStatusNotifier::callsAfterTheBusIsGoneAreHarmless()
{
    StatusNotifierWatcher watcher;
    QCOMPARE(::kill(pid_t(_bus->servicePid("org.freedesktop.DBus")), SIGKILL), 0);
    QTRY_VERIFY(!QDBusConnection::sessionBus().isConnected());
    watcher.RegisterStatusNotifierItem(_peer.baseService());
    watcher.RegisterStatusNotifierHost("org.host");
    QVERIFY(watcher.RegisteredStatusNotifierItems().isEmpty());
    QVERIFY(watcher.IsStatusNotifierHostRegistered());
}

QTEST_GUILESS_MAIN(TestStatusNotifier)
#include "tst_statusnotifier.moc"
