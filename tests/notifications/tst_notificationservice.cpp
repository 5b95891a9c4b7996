#include <quorvane/notifications/notificationsinterface.h>
#include <quorvane/notifications/notifier.h>

#include "patience.h"

#include <QtDBus>

// The service is another process. This one is its peer, of which nothing good is expected.
class TestNotificationService : public QObject
{
    Q_OBJECT

    QList<uint> pending() { return QDBusReply<QList<uint>>(_manager.call("listPending")).value(); }
    QVariant actionsOf(uint id) { return _manager.call("listAction", id).arguments().value(0); }

    QProcess _process;
    QDBusInterface _manager { "com.zovar.NotificationManager", "/com/zovar/NotificationManager" };
    OrgFreedesktopNotificationsInterface _service { "org.freedesktop.Notifications",
                                                    "/org/freedesktop/Notifications",
                                                    QDBusConnection::sessionBus() };

private Q_SLOTS:
    void init()
    {
        _manager.setTimeout(120000);
        _process.start(SERVICE, QStringList());
        QTRY_COMPARE(_manager.call("nbNotifications").arguments(), QVariantList { 0 });
    }

    // Fails when the service has not lived up to now or ends with a fault.
    void cleanup()
    {
        _process.closeWriteChannel();
        QVERIFY(_process.waitForFinished());
        QCOMPARE(_process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(_process.exitCode(), 0);
    }

    void floodIsKeptAndClosed()
    {
        QSignalSpy closed(&_service, &OrgFreedesktopNotificationsInterface::NotificationClosed);
        QList<QVariantList> outcomes;
        for (uint id = 1; id <= 2000; ++id) {
            _service.Notify("app", 0, "", "s", "b", { "n", QString::number(id) }, {}, 0);
            outcomes += { id, 3u };
        }
        QCOMPARE(pending().size(), 2000);
        QCOMPARE(actionsOf(999), QVariant(QStringList { "n", "999" }));
        for (uint id = 1; id <= 2000; ++id)
            _service.CloseNotification(id);
        QTRY_COMPARE_WITH_TIMEOUT(closed.size(), 2000, 60000);
        QCOMPARE(QList<QVariantList>(closed), outcomes);
    }

    void notifierActsOnItsLastNewPost()
    {
        XdgNotifier other, notifier;
        QSignalSpy closed(&notifier, &XdgNotifier::notificationClosed);
        QSignalSpy ids(&_service, &OrgFreedesktopNotificationsInterface::NotificationClosed);
        notifier.notify("s", "b", false, {}, 0);
        QTest::ignoreMessage(QtDebugMsg, "notifyTextOnly( \"s\" ,  \"b\" )");
        notifier.notifyTextOnly("s", "b", false);
        other.notify("s", "b", false, {}, 5);
        QTRY_COMPARE(ids.value(0), QVariantList({ 3u, 1u }));
        notifier.notify("s", "b", true, { "new" }, 0); // The answer is 3.
        notifier.notifyWithActions("s", "b", true, { "new", "New" });
        QCOMPARE(actionsOf(2), QVariant(QStringList { "new", "New" }));
        notifier.closeNotification();
        notifier.closeNotification();
        QTRY_COMPARE(closed.size(), 3);
        const QVariant call(" The notification was closed by a call to CloseNotification.");
        QCOMPARE(closed[1], { call });
        QTRY_COMPARE(ids.value(2), QVariantList({ 2u, 3u }));

        cleanup();
        notifier.notifyTextOnly("s", "b", false); // Nobody is there: the id is forgotten.
        init();
        other.notify("s", "b", false, {}, 0);
        other.notify("s", "b", false, {}, 0);
        notifier.notifyTextOnly("s", "b", true);
        QCOMPARE(pending(), QList<uint>({ 1, 2, 3 }));
    }
};

QTEST_GUILESS_MAIN(TestNotificationService)
#include "tst_notificationservice.moc"
