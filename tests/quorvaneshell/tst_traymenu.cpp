#include "patience.h"
#include "senderdeleter.h"
#include "signallog.h"

#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include <quorvaneshell/menus/traymenu.h>
#include <quorvaneshell/pictures/imagestore_p.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <memory>

using namespace quorvane;

// For each row its text and the first letters of what it is: "Mute evcc" is enabled, visible,
// checkable and checked.
static QString text(const TrayMenu *menu)
{
    QStringList rows;
    for (int row = 0; row < menu->count(); ++row) {
        const QVariantMap of = menu->get(row);
        QString line = of["label"].toString() + of["shortcut"].toString() + ' ';
        for (const char *role :
             { "enabled", "visible", "separator", "checkable", "radio", "checked" })
            line += of[role].toBool() ? QString(role[0]) : QString();
        line += of["iconSource"].toString().isEmpty() ? "" : "*";
        rows += line + (menu->submenu(row) ? '{' + text(menu->submenu(row)) + '}' : QString());
    }
    return rows.join('|');
}

#define SHOWS(expected) QTRY_COMPARE(text(&_menu), QString(expected))
#define SAYS(peer, said) QTRY_VERIFY((peer).peek(1 << 20).contains(said))

class TrayMenuTest : public QObject
{
    Q_OBJECT

    void _tell(const QByteArray &line) { _peer.write(line + '\n'); }
    void _read(const QString &service, const QString &path)
    {
        _menu.setService(service);
        _menu.setPath(path);
    }

    xdg::StatusNotifierWatcher _watcher;
    QProcess _display;
    QProcess _peer;
    TrayMenu _menu;
    QAbstractItemModelTester _tester { &_menu };

private Q_SLOTS:
    void initTestCase()
    {
        _display.start("Xvfb", { "-displayfd", "1", "-screen", "0", "64x64x24" });
        SAYS(_display, "\n");
        qputenv("DISPLAY", ':' + _display.readLine().trimmed());
        _peer.start("/usr/bin/python3", { MENUPEER });
        SAYS(_peer, "ready");
    }
    void cleanupTestCase()
    {
        for (QProcess *process : { &_peer, &_display }) {
            process->kill();
            process->waitForFinished();
        }
    }

    void theMenuOfAnIndicatorChangesWhileItIsOpen()
    {
        QSignalSpy opened(&_menu, &TrayMenu::opened);
        _read("org.quorvane.gtk", "/org/ayatana/NotificationItem/kettle/Menu");
        _menu.open();
        QVERIFY(_menu.isLoading() && opened.wait(patience));
        QCOMPARE(text(&_menu), "Open ev| evs|Mute vc|Loud evcrc|More ev{a_b ev}");
        for (int row : { -1, 1, 2, 4, 5, 0 })
            _menu.trigger(row);
        SAYS(_peer, "clicked");
        QVERIFY(_peer.readAll().contains("clicked _Open\n"));
        _tell("widgets.insert(Gtk.MenuItem(label='New', visible=True), 1); widgets.remove(loud)");
        SHOWS("Open ev|New ev| evs|Mute vc|More ev{a_b ev}");
    }

    void aMenuOfQtFillsItsSubmenuWhenItIsOpened()
    {
        _watcher.RegisterStatusNotifierHost("org.quorvane.menu");
        QProcess peer;
        qputenv("QT_QPA_PLATFORM", "xcb");
        peer.start(TRAYPEER, { "icon", "kettle" });
        SAYS(peer, "ready");
        static const QRegularExpression item("(.*)/StatusNotifierItem");
        QTRY_VERIFY(_watcher.RegisteredStatusNotifierItems().indexOf(item) >= 0);
        const QStringList items = _watcher.RegisteredStatusNotifierItems().filter(item);
        _read(items.value(0).section('/', 0, 0), "/MenuBar");
        SHOWS("RedCtrl+R ev*|More ev{}");
        QCOMPARE(ImageStore::find(_menu.get(0).value("iconSource").toString()).pixelColor(8, 8),
                 Qt::red);
        QVERIFY(_menu.submenu(1)->parent()); // So no engine takes it for its own.
        QSignalSpy opened(_menu.submenu(1), &TrayMenu::opened);
        _menu.submenu(1)->open();
        QVERIFY(opened.wait(patience));
        QCOMPARE(text(_menu.submenu(1)), "Late ev");
        peer.kill();
        SHOWS("");
        peer.waitForFinished();
    }

    void layoutsOfStrangers_data()
    {
        QTest::addColumn<QByteArray>("children");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char *name, const QByteArray &children, const QString &shown) {
            QTest::newRow(name) << children << shown;
        };
        row("ids", "item(1, item(1), item(0), item(2)), item(2), item(-3)", " ev{ ev}");
        row("types",
            "5, [2], item(1, {'a': 1}, label=5, enabled='', visible=[1], toggle_type=1.5, "
            "type=True, "
            "toggle_state='', shortcut=['a'], icon_data='', icon_name=1, children_display=png(9, "
            "9))",
            " ev");
        row("many", "*(item(i) for i in range(1, 3000))", " ev" + QString("| ev").repeated(1999));
        row("deep", "reduce(lambda below, i: item(i, below), range(19, 0, -1), 0)",
            " ev" + QString("{ ev").repeated(15) + QString("}").repeated(15));
        row("long", "item(1, label='_' * 5000)", QString("_").repeated(500) + " ev");
        row("pictures",
            "*(item(i + 1, icon_data=dbus.ByteArray(data)) for i, data in "
            "enumerate((png(9, 9), png(9, 999), png(9, 9)[:40], b'GIF' + png(9, 9), b'')))",
            " ev*| ev| ev| ev| ev");
        row("a budget",
            "*map(lambda i, data: item(i, icon_data=data), range(1, 18), [png(512, 512)] * 17)",
            QString(" ev*|").repeated(16) + " ev");
    }
    void layoutsOfStrangers()
    {
        QFETCH(QByteArray, children);
        QFETCH(QString, shown);
        _read("org.quorvane.menu", "/menu");
        _tell("menu.show(item(1, label='before'))");
        SHOWS("before ev");
        _tell("menu.show(" + children + ")");
        SHOWS(shown);
    }

    void rowsHaveIdsAndMnemonics()
    {
        _tell("menu.show(*(item(i + 3, label=label) for i, label in "
              "enumerate(['_a_b & __c_', 'd&_e', '_', '__'])))");
        SHOWS("ab & _c ev|d&e ev| ev|_ ev");
        const QStringList mnemonics { "&ab && _c", "d&&&e", "", "_" };
        for (int id = 3; id < 7; ++id) {
            QCOMPARE(_menu.indexOf(id), id - 3);
            QCOMPARE(_menu.find(id).value("mnemonicLabel").toString(), mnemonics.at(id - 3));
            QCOMPARE(_menu.index(id - 3).data(), _menu.find(id).value("label"));
        }
        QVERIFY(_menu.indexOf(2) == -1 && _menu.find(2).isEmpty());
    }

    void whatStaysKeepsItsSubmenu()
    {
        _tell("menu.show(item(1), item(2, item(3), label='a'), item(4, enabled=False))");
        SHOWS(" ev|a ev{ ev}| v");
        const TrayMenu *below = _menu.submenu(1);
        QSignalSpy changed(&_menu, &TrayMenu::dataChanged);
        SignalLog log({ &_menu });
        _tell("menu.show(item(4, enabled=False), item(5), item(2, item(3), item(6), label='b'))");
        SHOWS(" v| ev|b ev{ ev| ev}");
        QCOMPARE(_menu.submenu(2), below);
        auto roles = changed.takeFirst().at(2).value<QVector<int>>();
        std::sort(roles.begin(), roles.end());
        QCOMPARE(roles, QVector<int>({ Qt::DisplayRole, Qt::ToolTipRole, TrayMenu::LabelRole,
                                       TrayMenu::MnemonicLabelRole }));
        _tell("menu.ItemsPropertiesUpdated([(2, {'visible': False}), (9, {})], [(4, "
              "['enabled'])])");
        SHOWS(" ev| ev|b e{ ev| ev}");
        QCOMPARE(changed.size(), 2);
        QVERIFY(!log.take().contains("Reset"));
    }

    void aSlotMayDeleteTheMenu_data()
    {
        QTest::addColumn<bool>("isBelow");
        QTest::addColumn<QByteArray>("signal");
        for (const char *signal :
             { "serviceChanged", "pathChanged", "respondsChanged", "failed", "activationRequested",
               "countChanged", "loadingChanged", "opened", "rowsInserted", "rowsRemoved",
               "rowsMoved", "dataChanged" })
            QTest::newRow(signal) << false << QByteArray(signal);
        for (const char *signal : { "countChanged", "loadingChanged", "opened", "rowsInserted",
                                    "rowsRemoved", "dataChanged" })
            QTest::addRow("%s below", signal) << true << QByteArray(signal);
    }
    void aSlotMayDeleteTheMenu()
    {
        QFETCH(bool, isBelow);
        QFETCH(QByteArray, signal);
        _tell("menu.show(item(1, item(9)), item(2), item(3))");
        const QPointer<TrayMenu> menu(new TrayMenu);
        const auto end = qScopeGuard([&menu] {
            if (menu)
                menu->deleteLater();
        });
        QPointer<TrayMenu> sender = menu;
        std::unique_ptr<SenderDeleter> deleter;
        if (!isBelow)
            deleter = std::make_unique<SenderDeleter>(sender, signal);
        const bool fails = signal == "failed";
        if (menu)
            menu->setService("org.quorvane.menu");
        if (menu)
            menu->setPath(fails ? "/none" : "/menu");
        if (isBelow) {
            QTRY_VERIFY((sender = menu->submenu(0)));
            deleter = std::make_unique<SenderDeleter>(sender, signal);
        }
        int number = 10;
        const auto stir = [&] {
            const QByteArray text = QByteArray::number(++number);
            const QByteArray rows[] { "item(2), item(3, label='x')", "item(3), item(2)" };
            _tell("menu.show(item(1, item(9, label='" + text + "'), "
                  + (number % 3 == 0 ? "" : "item(1" + text + ")") + "), " + rows[number % 2]
                  + ", item(" + text + ")); menu.ItemActivationRequested(0, 0)");
            if (sender)
                sender->open();
        };
        QTRY_VERIFY((stir(), !sender));
    }

    void aStoppedBusHoldsNothingUp()
    {
        const QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
        const pid_t daemon = pid_t(bus->servicePid(bus->service()));
        _read("org.quorvane.nobody", "/menu");
        QTRY_VERIFY(!_menu.isLoading());
        ::kill(daemon, SIGSTOP);
        QElapsedTimer clock;
        clock.start();
        QSignalSpy connected(&_menu, &TrayMenu::respondsChanged);
        _read("org.quorvane.menu", "/menu");
        connected.wait(patience);
        ::kill(daemon, SIGCONT);
        QVERIFY(clock.elapsed() < patience / 2);
        _tell("menu.show(item(1, label='read'))");
        SHOWS("read ev");
    }

    void neitherAStormNorAStoppedProgramHoldsAnythingUp()
    {
        _peer.readAll();
        _tell("[GLib.timeout_add(i // 2, menu.LayoutUpdated, 0, 0) for i in range(5000)]; "
              "GLib.timeout_add(2500, menu.show, item(1, label='calm'))");
        SHOWS("calm ev");
        QVERIFY(_peer.readAll().count("asked") < 200);
        QSignalSpy changed(&_menu, &TrayMenu::dataChanged);
        _tell("menu.layout = item(0, item(1, label='still')); "
              "[menu.ItemsPropertiesUpdated([(1, {'label': str(i)})], []) for i in range(3000)]; "
              "menu.ItemsPropertiesUpdated([(1, {'label': 'still'})], [(1, ['enabled'])])");
        SHOWS("still ev");
        QVERIFY(changed.size() < 300);
        ::kill(pid_t(_peer.processId()), SIGSTOP);
        QSignalSpy failed(&_menu, &TrayMenu::failed);
        _menu.open();
        QVERIFY(failed.wait(patience) && !_menu.responds());
        QCOMPARE(text(&_menu), "still ev");
        ::kill(pid_t(_peer.processId()), SIGCONT);
        QTRY_VERIFY(_menu.responds());
        for (const char *service : { "org.quorvane.Übung", "org.quorvane.nobody" }) {
            _read(service, "/menu");
            _menu.open();
            QVERIFY(failed.wait(patience) && _menu.count() == 0);
        }
        _read("org.quorvane.menu", "/menu");
        SHOWS("still ev");
    }
};

QTEST_MAIN(TrayMenuTest)
#include "tst_traymenu.moc"
