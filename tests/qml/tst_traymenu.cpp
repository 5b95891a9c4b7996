#include "imagestore.h"
#include "signallog.h"
#include "traymenu.h"

#include <QtTest>
#include <QtWidgets>

#include <csignal>

// A menu of Qt Widgets, whose submenu is filled when it is about to be shown.
static int runIcon(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMenu menu;
    menu.addAction("&Open", [] { qInfo("Qt"); })->setShortcut(QKeySequence("Ctrl+O"));
    QPixmap red(16, 16);
    red.fill(Qt::red);
    menu.addAction(red, "a_b")->setCheckable(true);
    QMenu *below = menu.addMenu("More");
    QObject::connect(below, &QMenu::aboutToShow, [below] { below->addAction("Late"); });
    QSystemTrayIcon icon(red);
    icon.setContextMenu(&menu);
    icon.show();
    QTimer::singleShot(0, [] { qInfo("ready"); });
    return QApplication::exec();
}

// The rows as a line: hidden ones with a tilde, disabled ones with an exclamation mark.
static QString text(const TrayMenu *menu)
{
    QStringList rows;
    for (int row = 0; row < menu->count(); ++row) {
        const QVariantMap of = menu->get(row);
        const auto mark = [&of](const char *role, bool is, const QString &text) {
            return of.value(role).toBool() == is ? text : QString();
        };
        const QString box = mark("checkable", true, of["radio"].toBool() ? "(" : "[")
                            + mark("checked", true, "x");
        const TrayMenu *below = menu->submenu(row);
        rows += mark("visible", false, "~") + mark("enabled", false, "!") + box
                + mark("separator", true, "--") + of["label"].toString() + of["shortcut"].toString()
                + (below ? '{' + text(below) + '}' : QString());
    }
    return rows.join('|');
}

#define SHOWS(expected) QTRY_COMPARE_WITH_TIMEOUT(text(&_menu), QString(expected), 20000)
#define SAYS(peer, expected) QTRY_VERIFY_WITH_TIMEOUT(peer.peek(9999).contains(expected), 20000)

class TrayMenuTest : public QObject
{
    Q_OBJECT

    void _start(QProcess *peer, const QString &program, const QStringList &arguments)
    {
        peer->setProcessChannelMode(QProcess::MergedChannels);
        peer->start(program, arguments);
        SAYS((*peer), "ready");
    }
    void _tell(const QByteArray &line) { _peer.write(line + '\n'); }
    void _show(const QString &service, const QString &path)
    {
        _menu.setService(service);
        _menu.setPath(path);
    }

    QProcess _xvfb;
    QProcess _peer;
    TrayMenu _menu;
    QAbstractItemModelTester _tester { &_menu };

private Q_SLOTS:
    void initTestCase()
    {
        _xvfb.start("Xvfb", { "-displayfd", "1", "-screen", "0", "64x64x24" });
        QTRY_VERIFY_WITH_TIMEOUT(_xvfb.canReadLine(), 20000);
        qputenv("DISPLAY", ':' + _xvfb.readLine().trimmed());
        _start(&_peer, "/usr/bin/python3", { MENUPEER });
    }
    void cleanupTestCase()
    {
        for (QProcess *process : { &_peer, &_xvfb }) {
            process->kill();
            process->waitForFinished();
        }
    }

    void theMenuOfAnIndicatorChangesWhileItIsOpen()
    {
        QSignalSpy opened(&_menu, &TrayMenu::opened);
        _show("org.quorvane.gtk", "/org/ayatana/NotificationItem/kettle/Menu");
        _menu.open();
        QVERIFY(_menu.property("loading").toBool() && opened.wait(20000));
        QCOMPARE(text(&_menu), "Open|--|[xMute|(xQuiet|(Loud|!Off|More{a_b}");
        SignalLog log({ &_menu });
        for (int row : { 1, 5, 6, 4 })
            _menu.trigger(row);
        SAYS(_peer, "GTK Loud");
        _tell("widgets.insert(Gtk.MenuItem(label='New', visible=True), 1); widgets.remove(radio)");
        SHOWS("Open|New|--|[xMute|(xLoud|!Off|More{a_b}");
        QVERIFY2(!log.take().contains("modelReset"), "reset");
    }
};

int main(int argc, char **argv)
{
    if (argc > 1 && !qstrcmp(argv[1], "icon"))
        return runIcon(argc, argv);
    QApplication application(argc, argv);
    TrayMenuTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_traymenu.moc"
