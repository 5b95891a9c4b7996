#include "peer.h"

#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifierwatcherinterface.h>

#include <QtDBus>
#include <QtTest>

#include <csignal>

using Host = xdg::StatusNotifierHost;

static QString watcherName()
{
    return "org.kde.StatusNotifierWatcher";
}
static QString watcherPath()
{
    return "/StatusNotifierWatcher";
}
static QString itemInterface()
{
    return "org.kde.StatusNotifierItem";
}
static QString itemPath()
{
    return "/StatusNotifierItem";
}

// The values of one role, row by row.
static QVariantList values(const Host &host, int role)
{
    QVariantList result;
    for (int row = 0; row < host.rowCount(); ++row)
        result += host.data(host.index(row), role);
    return result;
}

static QByteArray gdbus(const QStringList &arguments)
{
    QProcess process;
    process.start("gdbus", QStringList({ arguments.first(), "--session" }) + arguments.mid(1));
    process.waitForFinished();
    return process.readAllStandardOutput().trimmed() + process.readAllStandardError();
}

// The elements of one interface, each with its words in order.
static QStringList elements(const QByteArray &xml, const QString &interface)
{
    static const QRegularExpression blanks("[\\s/>]+");
    const QString text = QString(xml).section("<interface name=\"" + interface, 1);
    QStringList result = text.section("</interface", 0, 0).split('<');
    for (QString &tag : result) {
        QStringList words = tag.split(blanks, Qt::SkipEmptyParts);
        words.sort();
        tag = words.join(' ');
    }
    return result;
}

// The watcher, the items and the host (this process), each in a process of its own. A connection
// more stands for other programs.
class TestTray : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void rowsFollowTheItems();
    void clickReachesTheFirstItemOfThatId();
    void restartedWatcherKnowsNobody();
    void slowAndOddItemsAreReadAsTheyAre();
    void formOfRegistration_data();
    void formOfRegistration();
    void watcherOutlivesRudePeers();
    void strangersAreNotHeard();
    void hostSurvivesAHostileWatcher();
    void withoutABusThereAreWarningsAlone();
    void gdbusFindsWhatTheInterfaceFilesSay();
    void systemTrayIconIsAnItem();

private:
    QDBusConnection _other = QDBusConnection(QString());
};

void TestTray::init()
{
    _other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "other");
}

void TestTray::cleanup()
{
    _other = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus("other");
    QTRY_VERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(watcherName()));
}

void TestTray::rowsFollowTheItems()
{
    Peer watcher("watcher");
    Peer first("item", "a");
    OrgKdeStatusNotifierWatcherInterface proxy(watcherName(), watcherPath(), _other);
    QTRY_COMPARE(proxy.registeredStatusNotifierItems().size(), 1);
    Host host; // An item that registers meanwhile would come twice, by list and by signal.
    QSortFilterProxyModel view;
    view.setSourceModel(&host);
    QTRY_COMPARE(host.rowCount(), 1);
    Peer second("item", "b");
    QTRY_COMPARE(host.rowCount(), 2);
    QSignalSpy changes(&host, &Host::dataChanged);

    const struct
    {
        QByteArray property;
        QVariant before;
        QVariant after;
        int role;
        bool announced;
    } rows[] = {
        { "category", "ApplicationStatus", "Hardware", 257, false },
        { "idItem", "b", "other", 258, false },
        { "title", "", "Titel für Ä", 259, true },
        { "status", "Active", "Passive", 260, true },
        { "windowId", 0, 42, 261, false },
        { "iconName", "", "document-new", 262, true },
        { "overlayIconName", "", "o", 263, true },
        { "attentionIconName", "", "i", 264, false },
        { "attentionMovieName", "", "m", 265, false },
    };
    QVector<int> announced;
    for (const auto &row : rows) {
        QCOMPARE(host.roleNames().value(row.role), row.property);
        QCOMPARE(host.data(host.index(1), row.role), row.before);
        second.write(row.property + ' ' + row.after.toString().toUtf8() + '\n');
        QTRY_COMPARE(host.data(host.index(1), row.role), row.after);
        if (row.announced)
            announced += row.role;
    }
    QTRY_COMPARE(changes.size(), announced.size());
    for (int role : qAsConst(announced)) {
        QCOMPARE(changes.first().first().toModelIndex(), host.index(1));
        QCOMPARE(changes.takeFirst().at(2).value<QVector<int>>(), QVector<int> { role });
    }
    QVERIFY(!host.data(host.index(0), Qt::DisplayRole).isValid());
    QVERIFY(!host.data(host.index(0), 266).isValid());

    // The one above goes and comes back; a change counts for the row of the item's arrival.
    first.die();
    QTRY_COMPARE(values(host, Host::IdRole), QVariantList({ "other" }));
    second.write("title new\n");
    QVERIFY(changes.wait());
    QVERIFY(!changes.first().first().toModelIndex().isValid());
    QCOMPARE(view.index(0, 0).data(Host::TitleRole), QVariant("new"));
    Peer again("item", "a");
    QTRY_COMPARE(values(host, Host::IdRole), QVariantList({ "other", "a" }));
}

void TestTray::clickReachesTheFirstItemOfThatId()
{
    Peer watcher("watcher");
    Host host;
    Peer first("item", "twin");
    QTRY_COMPARE(host.rowCount(), 1);
    Peer second("item", "twin");
    QTRY_COMPARE(host.rowCount(), 2);
    host.activate(1, 2, "nobody", 0);
    host.activate(1, -1, "twin", 0);
    host.activate(3, 4, "twin", 1);
    host.activate(5, 6, "twin", 2);
    QTRY_COMPARE(first.said(), QByteArray("1,4294967295 first\n3,4 second\n5,6 first\n"));
    QCOMPARE(second.said(), QByteArray());
}

void TestTray::restartedWatcherKnowsNobody()
{
    Peer watcher("watcher");
    Host host;
    Peer item("item", "old");
    QTRY_COMPARE(host.rowCount(), 1);
    watcher.die();
    Peer next("watcher");
    OrgKdeStatusNotifierWatcherInterface proxy(watcherName(), watcherPath(), _other);
    QCOMPARE(proxy.registeredStatusNotifierItems(), QStringList());
    QVERIFY(!proxy.isStatusNotifierHostRegistered());

    // The host still hears that name and still reads from the items.
    Peer newcomer("item", "new");
    QTRY_COMPARE(values(host, Host::IdRole), QVariantList({ "old", "new" }));
}

void TestTray::slowAndOddItemsAreReadAsTheyAre()
{
    Peer watcher("watcher");
    Host host;
    Peer item("odd");
    QTRY_COMPARE(host.rowCount(), 1);
    QCOMPARE(values(host, Host::TitleRole), QVariantList({ "" }));
    QCOMPARE(values(host, Host::StatusRole), QVariantList({ "" }));
    QCOMPARE(values(host, Host::WindowIdRole), QVariantList({ 0 }));

    Peer sleeper("item", "sleeper");
    QTRY_COMPARE(host.rowCount(), 2);
    QCOMPARE(::kill(pid_t(sleeper.processId()), SIGSTOP), 0);
    QElapsedTimer clock;
    clock.start();
    const QString wake = QString("sleep 1; kill -CONT %1").arg(sleeper.processId());
    QVERIFY(QProcess::startDetached("sh", { "-c", wake }));
    QCOMPARE(values(host, Host::IdRole), QVariantList({ "", "sleeper" }));
    QVERIFY(clock.elapsed() > 500);
}

void TestTray::formOfRegistration_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<int>("rows");

    QTest::newRow("bus name") << "org.example.form" << 1;
    QTest::newRow("unique name") << "<unique>" << 1;
    QTest::newRow("object path") << "/StatusNotifierItem" << 0;
    QTest::newRow("bus name and path") << "org.example.form/StatusNotifierItem" << 0;
    QTest::newRow("name without owner") << "org.example.nobody" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("root path") << "/" << 0;
    QTest::newRow("blanks") << "   " << 0;
    QTest::newRow("word") << "form" << 0;
    QTest::newRow("letter outside ASCII") << "org.quorvane.Übung-1" << 0;
    QTest::newRow("match rule") << "org.example.form',type='signal" << 0;
    QTest::newRow("100,000 characters") << QString(100000, 'a') << 0;
}

void TestTray::formOfRegistration()
{
    QFETCH(QString, form);
    form.replace("<unique>", _other.baseService());
    QVERIFY(_other.registerService("org.example.form"));
    Peer watcher("watcher");
    Host host;
    OrgKdeStatusNotifierWatcherInterface proxy(watcherName(), watcherPath(), _other);
    for (int time = 0; time < 2; ++time) {
        for (auto reply :
             { proxy.RegisterStatusNotifierHost(form), proxy.RegisterStatusNotifierItem(form) }) {
            reply.waitForFinished();
            QVERIFY(!reply.isError());
        }
    }
    const QStringList ids = proxy.registeredStatusNotifierItems();
    QTEST(ids.size(), "rows");
    QVERIFY(ids.isEmpty() || ids.first() == form + itemPath());
    QTRY_COMPARE(host.rowCount(), ids.size());
}

void TestTray::watcherOutlivesRudePeers()
{
    Peer watcher("watcher");
    {
        auto rude = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "rude");
        OrgKdeStatusNotifierWatcherInterface proxy(watcherName(), watcherPath(), rude);
        for (int i = 0; i < 2000; ++i)
            proxy.RegisterStatusNotifierItem(QString("org.example.flood%1").arg(i));
        proxy.RegisterStatusNotifierItem(rude.baseService());
        rude.interface()->isServiceRegistered(watcherName()); // Now they are all on their way.
    }
    QDBusConnection::disconnectFromBus("rude");
    OrgKdeStatusNotifierWatcherInterface proxy(watcherName(), watcherPath(), _other);
    QCOMPARE(proxy.protocolVersion(), 1);
    QTRY_COMPARE(proxy.registeredStatusNotifierItems(), QStringList());
}

void TestTray::strangersAreNotHeard()
{
    Peer watcher("watcher");
    Host host;
    Peer item("item");
    QTRY_COMPARE(host.rowCount(), 1);
    QSignalSpy changes(&host, &Host::dataChanged);
    _other.send(
            QDBusMessage::createSignal(watcherPath(), watcherName(), "StatusNotifierItemRegistered")
            << _other.baseService() + itemPath());
    _other.send(QDBusMessage::createSignal(itemPath(), itemInterface(), "NewIcon"));
    item.write("title the end\n");
    QVERIFY(changes.wait());
    QCOMPARE(changes.first().at(2).value<QVector<int>>(), QVector<int> { Host::TitleRole });
    QCOMPARE(host.rowCount(), 1);
}

void TestTray::hostSurvivesAHostileWatcher()
{
    Host host; // Before the name is taken: this process answers no call while it waits.
    QVERIFY(_other.registerService(watcherName()));
    const auto emitAll = [this](const QString &signal, const QStringList &ids) {
        for (const QString &id : ids)
            _other.send(QDBusMessage::createSignal(watcherPath(), watcherName(), signal) << id);
    };
    const QStringList ids { "",  "/",        "form",   "Übung/x", "a b/x",
                            ":", ":1.999/x", "org.x'", "form",    QString(100000, 'a') };
    emitAll("StatusNotifierItemRegistered", ids);
    QTRY_COMPARE(host.rowCount(), 9); // One of them came twice.
    for (int row = -1; row <= ids.size() + 1; ++row) {
        for (int role = 256; role <= 266; ++role)
            QVERIFY(host.data(host.index(row), role).toString().remove('0').isEmpty());
    }
    host.activate(0, 0, QString(), 0);
    QSortFilterProxyModel view; // Knows the nine rows, and not the tenth id behind them.
    view.setSourceModel(&host);
    QCOMPARE(view.rowCount(), 9);
    QSignalSpy removals(&host, &Host::rowsAboutToBeRemoved);
    emitAll("StatusNotifierItemUnregistered",
            QStringList(ids.last()) + ids + QStringList("unknown"));
    QTRY_COMPARE(removals.size(), 11);
    QCOMPARE(removals.last().mid(1), QVariantList({ -1, -1 }));
    QCOMPARE(host.rowCount(), 0);
}

void TestTray::withoutABusThereAreWarningsAlone()
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    environment.insert("QT_LOGGING_RULES", "*.debug=false");
    QByteArray warnings;
    for (const char *role : { "watcher", "item", "host" }) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(TRAYPEER, { role, "name" });
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        warnings += process.readAllStandardError();
    }
    const QByteArray noBus = "xdg.system_tray: Cannot connect to the D-Bus session bus.\n "
                             "Please check your system settings and try again.\n\n";
    QCOMPARE(warnings,
             noBus
                     + "xdg.system_tray: Don't register StatusNotifierWatcher service, probably "
                       "already exists\n"
                     + noBus
                     + "xdg.system_tray: Can't find watcher "
                       "org.kde.StatusNotifierWatcher/StatusNotifierWatcher\n");
}

void TestTray::gdbusFindsWhatTheInterfaceFilesSay()
{
    Peer watcher("watcher");
    Peer item("item");
    const QString name = item.service();
    const QStringList onWatcher { "-d", watcherName(), "-o", watcherPath() };
    const QStringList onItem { "-d", name, "-o", itemPath() };
    for (const QString &interface : { watcherName(), itemInterface() }) {
        QFile file(INTERFACES "/" + interface + ".xml");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray xml = gdbus(QStringList({ "introspect", "--xml" })
                                     + (interface == watcherName() ? onWatcher : onItem));
        QCOMPARE(elements(xml, interface), elements(file.readAll(), interface));
        QVERIFY(elements(xml, interface).size() > 10);
    }
    QProcess monitor;
    monitor.start("gdbus", QStringList({ "monitor", "--session" }) + onItem);
    QByteArray heard;
    QTRY_VERIFY((heard += monitor.readAll()).contains("is owned by"));
    item.write("status NeedsAttention\n");
    QTRY_VERIFY((heard += monitor.readAll()).contains(".NewStatus ('NeedsAttention',)"));
    monitor.kill();
    monitor.waitForFinished();

    const auto call = [](const QStringList &object, const QStringList &arguments) {
        return gdbus(QStringList("call") + object + QStringList("-m") + arguments);
    };
    const QString get = "org.freedesktop.DBus.Properties.Get";
    QCOMPARE(call(onWatcher, { get, watcherName(), "RegisteredStatusNotifierItems" }),
             "(<['" + name.toUtf8() + "/StatusNotifierItem']>,)");
    QCOMPARE(call(onItem, { get, itemInterface(), "WindowId" }), QByteArray("(<0>,)"));
    QCOMPARE(call(onItem, { itemInterface() + ".Activate", "--", "-1", "2" }), QByteArray("()"));
    QTRY_COMPARE(item.said(), QByteArray("4294967295,2 first\n"));
}

void TestTray::systemTrayIconIsAnItem()
{
    QProcess display;
    display.start("Xvfb", { "-displayfd", "1", "-screen", "0", "64x64x24" });
    QByteArray number;
    QTRY_VERIFY_WITH_TIMEOUT((number += display.readAllStandardOutput()).endsWith('\n'), 30000);
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", ':' + number.trimmed());
    environment.insert("QT_QPA_PLATFORM", "xcb");

    Peer watcher("watcher");
    Host host; // First: the icon asks once whether there is one.
    QProcess icon;
    icon.setProcessEnvironment(environment);
    icon.start(SYSTEMTRAYICON, QStringList());
    QTRY_COMPARE_WITH_TIMEOUT(host.rowCount(), 1, 30000);
    QVariantList read;
    for (int role = Host::CategoryRole; role <= Host::AttentionMovieNameRole; ++role)
        read += values(host, role);
    const QString id = "systemtrayicon";
    QCOMPARE(read, QVariantList({ "ApplicationStatus", id, id, "Active", 0, "", "", "", "" }));
    host.activate(3, 4, id, 0);
    host.activate(3, 4, id, 1);
    QByteArray clicks; // The reasons Trigger and MiddleClick.
    QTRY_COMPARE((clicks += icon.readAllStandardOutput()).size(), 4);
    QCOMPARE(clicks, QByteArray("3\n4\n"));
    icon.kill();
    QTRY_COMPARE(host.rowCount(), 0);
    icon.waitForFinished();
    display.kill();
    display.waitForFinished();
}

QTEST_GUILESS_MAIN(TestTray)
#include "tst_tray.moc"
