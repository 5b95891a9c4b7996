#include "patience.h"
#include "senderdeleter.h"

#include <quorvaneshell/menus/traymenu.h>
#include <quorvanewidgets/traymenupopup.h>

#include <QAction>
#include <QActionGroup>
#include <QPointer>

#include <csignal>

using namespace quorvane;

// For each visible action its text and what it is: "_" for a line, "-" if it can't be chosen, "v" and
// "o" for a check mark and a radio button, "V" and "O" if they are set.
static QString text(const QMenu *menu)
{
    QStringList rows;
    const QList<QAction *> actions = menu->actions();
    for (const QAction *action : actions) {
        if (!action->isVisible())
            continue;
        QString mark = action->isCheckable() ? action->actionGroup() ? "o" : "v" : "";
        rows += action->text()
                + (action->isSeparator() ? "_"
                   : action->isEnabled() ? ""
                                         : "-")
                + (action->isChecked() ? mark.toUpper() : mark) + (action->menu() ? "{}" : "");
    }
    return rows.join('|');
}

#define SHOWS(menu, expected) QTRY_COMPARE(text(menu), QString(expected))
#define SAYS(said) QTRY_VERIFY(_peer.peek(1 << 20).contains(said))

class TrayMenuPopupTest : public QObject
{
    Q_OBJECT

    void _tell(const QByteArray &line) { _peer.write(line + '\n'); }
    void _open()
    {
        _popup->open({ 5, 5 });
        QTRY_VERIFY(_popup->isVisible());
    }

    QProcess _display;
    QProcess _peer;
    QPointer<TrayMenu> _menu;
    QPointer<TrayMenuPopup> _popup;

private Q_SLOTS:
    void initTestCase()
    {
        _display.start("Xvfb", { "-displayfd", "1", "-screen", "0", "64x64x24" });
        QTRY_VERIFY(_display.canReadLine());
        qputenv("DISPLAY", ':' + _display.readLine().trimmed()); // Of the peer.
        _peer.start("/usr/bin/python3", { MENUPEER });
        SAYS("ready");
    }
    void cleanupTestCase()
    {
        for (QProcess *process : { &_peer, &_display }) {
            process->kill();
            process->waitForFinished();
        }
    }
    void init()
    {
        _tell("menu.show(item(1, label='a'), item(2, item(21, label='below'), label='b'))");
        _menu = new TrayMenu;
        _menu->setService("org.quorvane.menu");
        _menu->setPath("/menu");
        _popup = new TrayMenuPopup(_menu);
    }
    void cleanup()
    {
        delete _popup;
        delete _menu;
    }

    void rowsAreShownAndChosen()
    {
        _tell("menu.show(item(1, label='_Save & _go', shortcut=[['Control', 's']]), "
              "item(2, type='separator'), item(3, label='hidden', visible=False), "
              "item(4, label='c', toggle_type='checkmark', toggle_state=1), "
              "item(5, label='r', toggle_type='radio', toggle_state=1), "
              "item(6, label='s', toggle_type='radio'), item(7, label='off', enabled=False), "
              "item(8, item(9), label='more'))");
        QVERIFY(!_popup->isVisible());
        _open();
        SHOWS(_popup, "&Save && go\tCtrl+s|_|cV|rO|so|off-|more{}");
        SAYS("opened 0");
        _peer.readAll();
        _popup->actions().at(6)->trigger(); // The mark is the program's.
        SAYS("clicked 6");
        SHOWS(_popup, "&Save && go\tCtrl+s|_|cV|rO|so|off-|more{}");
        _popup->hide();
        SAYS("closed 0");
    }

    void anOpenMenuChanges()
    {
        _open();
        SHOWS(_popup, "a|b{}");
        QAction *const a = _popup->actions().at(1);
        QMenu *const b = _popup->actions().at(2)->menu();
        _tell("menu.show(item(2, label='b', children_display='submenu'), item(3, label='new'), "
              "item(1, label='a'))");
        SHOWS(_popup, "b{}|new|a");
        QCOMPARE(_popup->actions().at(3), a);
        QCOMPARE(_popup->actions().at(1)->menu(), b);
        _tell("menu.ItemsPropertiesUpdated([(1, {'label': 'A'})], [])");
        SHOWS(_popup, "b{}|new|A");
        QTRY_COMPARE(_popup->size(), _popup->sizeHint());
        _tell("menu.show()");
        SHOWS(_popup, QChar(0x2026) + QString("-"));
        // Many at once.
        QElapsedTimer clock;
        clock.start();
        _tell("menu.show(*(item(i, label=str(i)) for i in range(1, 2000)))");
        QTRY_COMPARE(_popup->actions().size(), 2000);
        QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
        QTRY_VERIFY(_popup->height() > 200);
    }

    void aSubmenuIsAskedForWhenItIsOpened()
    {
        _open();
        QPointer<QMenu> below = _popup->actions().at(2)->menu();
        SHOWS(below, QChar(0x2026) + QString("-"));
        _peer.readAll();
        _popup->setActiveAction(_popup->actions().at(2));
        QTRY_VERIFY(below->isVisible());
        SHOWS(below, "below");
        SAYS("opened 2");
        _tell("menu.show(item(1, label='a'))");
        QTRY_VERIFY(!below && _popup->isVisible());
    }

    void whatGoesIsHidden()
    {
        _open();
        delete _menu;
        QVERIFY(!_popup->isVisible() && !_popup->trayMenu());
        _popup->popup({ 0, 0 });
        QTRY_VERIFY(!_popup->isVisible());
    }

    void nothingIsShownWithoutAnAnswer()
    {
        QSignalSpy failed(_popup, &TrayMenuPopup::failed);
        ::kill(pid_t(_peer.processId()), SIGSTOP);
        _popup->open({ 0, 0 });
        QVERIFY(failed.wait(patience) && !_popup->isVisible());
        ::kill(pid_t(_peer.processId()), SIGCONT);
        _open();
    }

    void aSlotMayDelete_data()
    {
        QTest::addColumn<bool>("isOfPopup");
        QTest::addColumn<QByteArray>("signal");
        QTest::addColumn<bool>("isPopupDeleted");
        for (const bool isPopupDeleted : { true, false }) {
            for (const char *signal : { "failed", "triggered", "hovered" })
                QTest::addRow("%s %d", signal, isPopupDeleted)
                        << true << QByteArray(signal) << isPopupDeleted;
            for (const char *signal : { "opened", "failed", "loadingChanged", "rowsInserted",
                                        "rowsRemoved", "dataChanged" })
                QTest::addRow("%s of the menu %d", signal, isPopupDeleted)
                        << false << QByteArray(signal) << isPopupDeleted;
        }
    }
    void aSlotMayDelete()
    {
        QFETCH(bool, isOfPopup);
        QFETCH(QByteArray, signal);
        QFETCH(bool, isPopupDeleted);
        QObject *const sender = isOfPopup ? static_cast<QObject *>(_popup) : _menu;
        const QPointer<QObject> goes = isPopupDeleted ? static_cast<QObject *>(_popup) : _menu;
        if (signal == "failed")
            _menu->setPath("/none");
        const SenderDeleter deleter(sender, signal, goes);
        _popup->open({ 0, 0 });
        int number = 10;
        const auto stir = [&] {
            if (_popup && _popup->actions().size() > 1)
                _popup->actions().at(1)->hover();
            if (_popup && _popup->actions().size() > 1)
                _popup->actions().at(1)->trigger();
            const QByteArray text = QByteArray::number(++number);
            _tell("menu.show(item(1, label='" + text + "'), item(" + text + "))");
        };
        QTRY_VERIFY((stir(), !goes));
    }
};

QTEST_MAIN(TrayMenuPopupTest)
#include "tst_traymenupopup.moc"
