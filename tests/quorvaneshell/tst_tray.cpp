#include "senderdeleter.h"
#include "trayprogram.h"

#include <quorvaneshell/bus/patientcall_p.h>
#include <quorvaneshell/menus/traymenu.h>
#include <quorvaneshell/pictures/imagestore_p.h>
#include <quorvaneshell/tray/tray.h>

#include <QDBusInterface>
#include <QtTest>

#include <csignal>
#include <memory>

using namespace quorvane;

// The values of some roles in all rows.
static QString text(const Tray &tray, const QString &roles)
{
    const QStringList names = roles.split(' ');
    QStringList rows;
    for (int row = 0; row < tray.rowCount(); ++row) {
        QStringList values;
        for (const QString &role : names) {
            const QVariant value = tray.get(row).value(role);
            values += role == "status"
                              ? QMetaEnum::fromType<Tray::Status>().valueToKey(value.toInt())
                              : value.toString();
        }
        rows += values.join('|');
    }
    return rows.join(", ");
}
static QString key(const Tray &tray, int row)
{
    return tray.get(row).value("key").toString();
}
#define SHOWS(tray, roles, rows) QTRY_COMPARE(text(tray, roles), QString(rows))
#define SAYS(peer, ...) QTRY_VERIFY((peer).says(__VA_ARGS__))

class TrayTest : public QObject
{
    Q_OBJECT

    QProcess _xvfb;

private Q_SLOTS:
    void initTestCase()
    {
        _xvfb.start("Xvfb", { "-displayfd", "1", "-screen", "0", "64x64x24" });
        QTRY_VERIFY(_xvfb.canReadLine());
        qputenv("DISPLAY", ':' + _xvfb.readLine().trimmed());
        qputenv("QT_QPA_PLATFORM", "xcb"); // Of the peers.
    }
    void cleanupTestCase()
    {
        _xvfb.kill();
        _xvfb.waitForFinished();
    }

    void itemsOfAllKindsAreShownAndClicked()
    {
        Peer first("item", "twin"), second("item", "twin"); // They register once, and nowhere.
        Tray tray;
        const QAbstractItemModelTester tester(&tray);
        SHOWS(tray, "itemId", "twin, twin");
        Peer icon("icon", "icon");
        SHOWS(tray, "itemId", "icon, twin, twin");
        Peer indicator(MENUPEER);
        indicator.tell("indicator.set_status(1); indicator.set_title('Kettle')");
        SHOWS(tray, "itemId toolTip status hasMenu",
              "icon|icon|Active|true, kettle|Kettle|Active|true, twin|twin|Active|false, "
              "twin|twin|Active|false");
        QVERIFY(!ImageStore::find(tray.get(0).value("iconSource").toString()).isNull());

        const bool inOrder = key(tray, 2).contains(QString::number(first.processId()));
        tray.activate(key(tray, inOrder ? 2 : 3), 1, -2);
        tray.secondaryActivate(key(tray, inOrder ? 3 : 2), 3, 4);
        tray.activate(key(tray, 0), 0, 0);
        SAYS(first, "first 1 4294967294");
        SAYS(second, "second 3 4");
        SAYS(icon, "\n3\n");
        // An indicator can't be activated: that is found out once.
        QSignalSpy menus(&tray, &Tray::menuRequested);
        const QString indicatorKey = key(tray, 1);
        for (int x : { 5, 6 }) {
            tray.activate(indicatorKey, x, 0);
            QVERIFY(!menus.isEmpty() || menus.wait(patience));
            QCOMPARE(menus.takeFirst(), QVariantList({ indicatorKey, x, 0 }));
            QVERIFY(tray.get(1).value("isMenu").toBool());
        }
        tray.scroll(indicatorKey, 120);
        SAYS(indicator, "SCROLL_UP");
        const QPointer<TrayMenu> menu = tray.menu(indicatorKey);
        QVERIFY(menu->parent()); // So no engine takes it for its own.
        QTRY_COMPARE(menu->count(), 5);
        QVERIFY(!tray.menu(key(tray, 2)) && !tray.menu("unknown"));
        for (Peer *peer : { &second, &indicator })
            peer->kill();
        SHOWS(tray, "itemId", "icon, twin");
        QTRY_VERIFY(!menu);
    }

    void changesAreReadTogether()
    {
        Tray tray;
        Peer peer(ITEMPEER);
        peer.tell("register('/item')");
        SHOWS(tray, "itemId title", "odd|");
        peer.tell("change(Title='a'); change(Title='b')");
        SHOWS(tray, "title", "b");
        SAYS(peer, "GetAll", 2);
        peer.tell("item.held = True; change(Title='c')");
        SAYS(peer, "GetAll", 3);
        peer.tell("for i in range(99): change(Title='d')");
        peer.tell("item.held(values); item.held = None");
        SAYS(peer, "GetAll", 4);
        peer.tell("change(Title='e')");
        SHOWS(tray, "title", "e");
        QVERIFY(peer.says("GetAll", 5) && !peer.says("GetAll", 6));
    }

    void aStoppedItemHoldsUpNobody()
    {
        Tray tray;
        Peer stopped(ITEMPEER);
        stopped.tell("register('/item')");
        SHOWS(tray, "itemId", "odd");
        Peer other("item", "other");
        SHOWS(tray, "itemId", "other, odd");
        kill(pid_t(stopped.processId()), SIGSTOP);
        QSignalSpy failed(&tray, &Tray::failed);
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < 1000; ++i) {
            tray.activate(key(tray, 1), i, i);
            tray.scroll(key(tray, 1), i);
        }
        QVERIFY(clock.elapsed() < 2000);
        other.tell("title x");
        SHOWS(tray, "itemId title responds", "other|x|true, odd||false");
        QTRY_COMPARE(failed.value(0), QVariantList({ key(tray, 1), "odd does not answer" }));
        kill(pid_t(stopped.processId()), SIGCONT);
        SHOWS(tray, "responds", "true, true");
        SAYS(stopped, "scroll 999 vertical");
        QCOMPARE(failed.size(), 1);
    }

    void aClickMayFail()
    {
        Tray tray;
        Peer peer(ITEMPEER);
        peer.tell("register('/item')");
        SHOWS(tray, "itemId", "odd");
        QSignalSpy failed(&tray, &Tray::failed);
        const QString key = ::key(tray, 0);
        tray.secondaryActivate(key, 1, 2); // It knows no such click,
        tray.scroll(key, 1, Qt::Horizontal);
        tray.contextMenu(key, 1, 2); // and has nothing to show.
        SAYS(peer, "scroll 1 horizontal");
        QTRY_COMPARE(failed.size(), 1);
        QVERIFY(failed.at(0).at(1).toString().contains("ContextMenu"));
        QCOMPARE(tray.indexOf(key), 0);
        QCOMPARE(tray.index(0).data(), tray.find(key).value("itemId"));
        QVERIFY(tray.indexOf("unknown") == -1 && tray.find("unknown").isEmpty());
    }

    void theRegistryMayChangeHands()
    {
        auto registry = std::make_unique<Peer>("watcher");
        Peer early("item", "early");
        auto tray = std::make_unique<Tray>();
        Tray other;
        const QAbstractItemModelTester tester(&other);
        SHOWS(*tray, "itemId", "early");
        SHOWS(other, "itemId", "early");
        QTRY_COMPARE(other.owner().value("pid").toLongLong(), registry->processId());
        QCOMPARE(other.owner().value("name"), "traypeer");
        QSignalSpy removals(&other, &Tray::rowsRemoved);
        registry.reset();
        QTRY_VERIFY(other.owner().isEmpty() && other.isRegistered());
        Peer late("item", "late");
        SHOWS(*tray, "itemId", "early, late");
        tray.reset(); // It was the first of this process, and kept the registry.
        Peer last("item", "last");
        SHOWS(other, "itemId", "early, last, late");
        QCOMPARE(removals.size(), 0);
    }

    void rowsStandByCategoryAndTitle()
    {
        Tray tray;
        Peer peer(ITEMPEER);
        int number = 0;
        for (const char *values :
             { "Id='f', Category='Odd'", "Id='e', Title='Zoo', Category='Hardware'", "Id='c'",
               "Id='d', Title='a', Category='Communications'",
               "Id='a', Title='B', Category='ApplicationStatus'",
               "Id='z', Title='b', Category='ApplicationStatus'",
               "Id='b', Title='c', Category='ApplicationStatus'" }) {
            const QByteArray path = "'/p" + QByteArray::number(++number) + '\'';
            peer.tell("last = make(" + path + ", " + values + "); register(" + path + ")");
        }
        SHOWS(tray, "itemId", "a, z, b, d, e, c, f");
        peer.tell("last.values['Title'] = 'A'; bus.send_message("
                  "dbus.lowlevel.SignalMessage('/p7', NAME, 'NewTitle'))");
        QTRY_COMPARE(tray.get(2).value("title"), "A");
    }

    void anItemMayComeAfterItsNameAndHaveTwo()
    {
        Peer peer(ITEMPEER);
        peer.tell("name = dbus.service.BusName('org.freedesktop.StatusNotifierItem-1-1', bus)");
        peer.tell("print('named', flush=True)");
        SAYS(peer, "named");
        Tray tray;
        QSignalSpy removed(&tray, &Tray::rowsRemoved);
        QTRY_VERIFY(tray.isRegistered());
        peer.tell("late = make('/StatusNotifierItem', Id='late')");
        SHOWS(tray, "itemId key", "late|org.freedesktop.StatusNotifierItem-1-1/StatusNotifierItem");
        peer.tell("register(bus.get_unique_name()); register('/item')");
        SHOWS(tray, "itemId", "late, odd");
        peer.tell("del name"); // It has another.
        QVERIFY(removed.wait(patience));
        SHOWS(tray, "itemId", "late, odd");
    }

    void anAnswerMayBeLost()
    {
        Tray tray;
        Peer peer(ITEMPEER);
        peer.tell("register('/item')");
        SHOWS(tray, "itemId", "odd");
        peer.tell("item.lost = 2; print('loses', flush=True)");
        SAYS(peer, "loses");
        PatientCall call(key(tray, 0).section('/', 0, 0), "/item",
                         "org.freedesktop.DBus.Properties", "GetAll", { "any" }, nullptr,
                         std::chrono::milliseconds(50));
        QSignalSpy answered(&call, &PatientCall::answered);
        call.ask();
        QVERIFY(call.isWaiting() && answered.wait(patience) && !call.isWaiting());
        QVERIFY(peer.says("GetAll", 4));
    }

    void strangersRegister()
    {
        Tray tray;
        auto rude = std::make_unique<Peer>(ITEMPEER);
        Peer peer(ITEMPEER);
        peer.tell("print(bus.get_unique_name(), flush=True)");
        SAYS(peer, ":");
        const QByteArray other = peer.peek(99).mid(6).trimmed();
        rude->tell("register('" + other + "/item')");              // It is not this one's.
        rude->tell("for i in range(99): register('/path%d' % i)"); // There are no such objects.
        SAYS(*rude, "LimitsExceeded");
        rude->tell("more = [dbus.bus.BusConnection() for i in range(9)]");
        rude->tell("[register('/path%d' % i, each) for each in more for i in range(64)]");
        rude->tell("print('full', flush=True)");
        SAYS(*rude, "full");
        peer.tell("register('org.example.nobody')");
        for (const char *text :
             { "", "word", "a b", "org.\xc3\x9c.x", "org.x+", ":1.", "/a//b", "/a/", "org.3d",
               "org.freedesktop.DBus/x", "a.%s' % ('b' * 99999) + '" })
            peer.tell(QByteArray("register('") + text + "')");
        SAYS(peer, "InvalidArgs", 11);
        QVERIFY(tray.rowCount() == 0);
        peer.tell("register(bus.get_unique_name() + '/item')");
        SHOWS(tray, "itemId", "odd");
        rude.reset();
        const auto listed = [] {
            QDBusInterface registry("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher");
            return registry.property("RegisteredStatusNotifierItems").toStringList();
        };
        QTRY_COMPARE(listed(), QStringList(other + "/item"));
    }

    void strangersSendValues_data()
    {
        QTest::addColumn<QString>("expected"); // The width of the picture goes first.
        const auto add = [](const QByteArray &values, const QString &expected) {
            QTest::addRow("%s", values.constData()) << expected;
        };
        add("Title=5, Status='x', Menu='no', ToolTip='x', ItemIsMenu='x', IconPixmap=5, Id=5",
            "0||Active|false|false|");
        add("Title='t' * 9999999, IconName='i' * 99999",
            QString("0|%1|Active|false|false|%1").arg(QString(1000, 't')));
        add("ToolTip=('', pictures(), 'A', 'b<br><i>c</i>'), Menu=dbus.ObjectPath('/m')",
            "0||Active|false|false|A\nb\nc"); // Nobody knows the menu's interface there.
        add("ItemIsMenu=True, Menu=dbus.ObjectPath('/'), Status='Passive'",
            "0||Passive|false|true|odd");
        add("IconPixmap=pictures((16, 16, 256), (64, 64, 4096), (300, 300, 90000))",
            "64||Active|false|false|odd");
        add("AttentionIconPixmap=pictures((16, 16, 256)), Status='NeedsAttention'",
            "16||NeedsAttention|false|false|odd");
        add("IconPixmap=pictures((-1, -1, 1), (0, 0, 0), (2, 2, 5), (65536, 65536, 0))",
            "0||Active|false|false|odd");
    }
    void strangersSendValues()
    {
        Tray tray;
        Peer peer(ITEMPEER);
        peer.tell(QByteArray("change(") + QTest::currentDataTag() + "); register('/item')");
        QTRY_COMPARE(tray.rowCount(), 1);
        const QString source = tray.get(0).value("iconSource").toString();
        QImage image = ImageStore::find(source);
        if (image.isNull()) // With a name before it.
            image = ImageStore::find(source.section('/', -2, -2));
        QFETCH(QString, expected);
        QTRY_COMPARE(QString::number(image.width()) + '|'
                             + text(tray, "title status hasMenu isMenu toolTip"),
                     expected);
        QVERIFY(image.isNull() || image.pixel(3, 3) == 0xff008040);
    }

    void aSlotMayDeleteTheTray_data()
    {
        QTest::addColumn<QByteArray>("signal");
        for (const char *signal :
             { "countChanged", "registeredChanged", "ownerChanged", "menuRequested", "failed",
               "rowsInserted", "rowsRemoved", "dataChanged" })
            QTest::newRow(signal) << QByteArray(signal);
    }
    void aSlotMayDeleteTheTray()
    {
        QFETCH(QByteArray, signal);
        const std::unique_ptr<Peer> registry(signal == "ownerChanged" ? new Peer("watcher")
                                                                      : nullptr);
        Peer indicator(MENUPEER);
        indicator.tell("indicator.set_status(1)");
        const QPointer<Tray> tray(new Tray);
        const auto end = qScopeGuard([&tray] {
            if (tray)
                tray->deleteLater();
        });
        const SenderDeleter deleter(tray, signal);
        Peer odd(ITEMPEER);
        odd.tell("register('/item')");
        int number = 0;
        const auto stir = [&] {
            if (!tray || tray->rowCount() == 0)
                return;
            indicator.tell("indicator.set_title('" + QByteArray::number(++number) + "')");
            tray->contextMenu(key(*tray, 0), 0, 0);
            if (tray)
                tray->contextMenu(key(*tray, tray->rowCount() - 1), 0, 0);
            if (signal == "rowsRemoved")
                indicator.kill();
        };
        QTRY_VERIFY((stir(), !tray));
    }
};

QTEST_MAIN(TrayTest)
#include "tst_tray.moc"
