#include "trayprogram.h"

#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QWindow>

#include <memory>

// The tray, used from QML.
class TrayExampleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theExampleIsATray()
    {
        QProcess xvfb;
        xvfb.start("Xvfb", { "-displayfd", "1", "-screen", "0", "64x64x24" });
        QTRY_VERIFY(xvfb.canReadLine());
        qputenv("DISPLAY", ':' + xvfb.readLine().trimmed());
        qputenv("QT_QPA_PLATFORM", "xcb"); // Of the peers.
        const auto end = qScopeGuard([&xvfb] {
            xvfb.kill();
            xvfb.waitForFinished();
        });
        QQmlApplicationEngine engine;
        engine.addImportPath(IMPORT_PATH);
        engine.load(QUrl::fromLocalFile(EXAMPLE));
        auto *window = qobject_cast<QWindow *>(engine.rootObjects().value(0));
        const auto click = [window](Qt::MouseButton button, int x, int y) {
            QTest::mouseClick(window, button, {}, { x, y });
        };
        Peer item("item", "item");
        QTRY_VERIFY((click(Qt::LeftButton, 9, 9), item.says("first")));
        Peer indicator(MENUPEER); // In the second place.
        indicator.tell("indicator.set_status(1)");
        QTRY_VERIFY((click(Qt::RightButton, 40, 9), click(Qt::LeftButton, 9, 48),
                     indicator.says("clicked _Open")));
    }

    void statusAndOrientationAreEnumerators()
    {
        QQmlEngine engine;
        engine.addImportPath(IMPORT_PATH);
        QQmlComponent component(&engine);
        component.setData(R"(import QtQuick 2.15
            import Quorvane 1.1
            Tray {
                property bool scrolled: false
                onDataChanged: {
                    scroll(get(0).key, 1, Qt.Horizontal)
                    scrolled = get(0).status === Tray.Passive && find(get(0).key).status === 0
                }
            })",
                          QUrl());
        const std::unique_ptr<QObject> tray(component.create());
        QVERIFY2(tray, qPrintable(component.errorString()));
        Peer passive(ITEMPEER);
        passive.tell("register('/item')");
        QTRY_COMPARE(tray->property("count").toInt(), 1);
        passive.tell("change(Status='Passive')");
        QTRY_VERIFY(tray->property("scrolled").toBool());
        QTRY_VERIFY(passive.says("scroll 1 horizontal"));
    }
};

QTEST_MAIN(TrayExampleTest)
#include "tst_trayexample.moc"
