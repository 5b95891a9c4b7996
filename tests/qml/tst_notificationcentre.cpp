#include "patience.h"

#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QWindow>
#include <QtTest>

// Notifications as QML sees them.
class NotificationCentreTest : public QObject
{
    Q_OBJECT

    QQmlApplicationEngine _engine;

private Q_SLOTS:
    void initTestCase() { _engine.addImportPath(IMPORT_PATH); }

    void enumeratorsAreNumbers()
    {
        QQmlComponent component(&_engine);
        component.setData(R"(import QtQuick 2.15
            import Quorvane 1.1
            Notifications {
                property string said
                onPosted: function(id) {
                    const { actions, urgency } = find(id);
                    said += [urgency === Notifications.Critical, actions[0].id, actions[0].text];
                    close(id, Notifications.Expired);
                }
                onClosed: function(id, reason) { said += reason === Notifications.Expired }
            })",
                          {});
        const std::unique_ptr<QObject> notifications(component.create());
        QVERIFY2(notifications, qPrintable(component.errorString()));
        QTRY_VERIFY(notifications->property("registered").toBool());
        QProcess peer;
        peer.start("notify-send", { "-u", "critical", "-A", "yes=Yes", "Question" });
        QTRY_COMPARE(notifications->property("said").toString(), "true,yes,Yestrue");
        QTRY_COMPARE(peer.state(), QProcess::NotRunning);
    }

    void theExampleIsACentre()
    {
        _engine.load(QUrl::fromLocalFile(EXAMPLE));
        auto *window = qobject_cast<QWindow *>(_engine.rootObjects().value(0));
        QTRY_COMPARE(window->title(), "Notifications");
        QProcess peer;
        peer.start("notify-send", { "-A", "default=Open", "Question" });
        const auto click = [window] {
            QTest::mouseClick(window, Qt::LeftButton, {}, { 10, 10 });
            return true;
        };
        QTRY_VERIFY(click() && peer.state() == QProcess::NotRunning);
        QCOMPARE(peer.readAll(), QByteArray("default\n"));
    }
};

QTEST_MAIN(NotificationCentreTest)
#include "tst_notificationcentre.moc"
