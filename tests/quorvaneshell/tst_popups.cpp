#include "patience.h"

#include <quorvaneshell/notifications/notificationpopups.h>
#include <quorvaneshell/notifications/notifications.h>
#include <quorvaneshell/notifications/notificationservice_p.h>

#include <QAbstractItemModelTester>
#include <QDBusConnection>
#include <QtTest>

using namespace quorvane;

namespace {

struct Centre : Notifications
{
    uint add(const QString &text, int timeout = 0, uint replaces = 0, const QVariantMap &hints = {})
    {
        const uint id = service->post({ "Test",
                                        replaces,
                                        {},
                                        text,
                                        {},
                                        { "a", "A" },
                                        { hints },
                                        timeout,
                                        0,
                                        QDBusConnection::sessionBus().baseService() });
        service->list()->pending(); // It is in the list after this.
        return id;
    }

    QSharedPointer<NotificationService> service = NotificationService::shared();
    QAbstractItemModelTester tester { this, QAbstractItemModelTester::FailureReportingMode::Fatal };
};

QString all(const ListModel &model, const QString &role = "summary")
{
    QStringList values;
    for (int row = 0; row < model.rowCount(); ++row)
        values += model.get(row).value(role).toString();
    return values.join(' ');
}

} // namespace

class PopupsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aHeldOneStays()
    {
        Centre centre;
        auto other = std::make_unique<Notifications>();
        const uint held = centre.add("Held", 1);
        centre.hold(held);
        other->hold(held);
        centre.add("Shown", 1);
        QTRY_COMPARE(all(centre), "Held");
        centre.release(held);
        centre.release(held); // That of the other is not this one's.
        centre.add("Shown", 1);
        QTRY_COMPARE(all(centre), "Held");
        QElapsedTimer time;
        time.start();
        other.reset();
        QTRY_COMPARE(centre.count(), 0);
        QVERIFY(time.elapsed() >= 990);
    }

    void whatExpiresIsKept()
    {
        Centre centre;
        centre.setKeepExpired(true);
        QSignalSpy expired(&centre, &Notifications::expired);
        QSignalSpy closed(&centre, &Notifications::closed);
        QSignalSpy ended(centre.service->list(), &NotificationList::ended);
        const uint id = centre.add("Kept", 1);
        const uint resident = centre.add("Resident", 1, 0, { { "resident", true } });
        centre.add("Transient", 1, 0, { { "transient", true } });
        QTRY_COMPARE(expired.size(), 2);
        QTRY_COMPARE(closed.size(), 1);
        QCOMPARE(all(centre), "Resident Kept");
        QVERIFY(centre.find(id).value("actions").toList().isEmpty());
        QCOMPARE(centre.find(resident).value("actions").toList().size(), 1);
        QCOMPARE(centre.find(resident).value("expired"), true);

        QCOMPARE(centre.unreadCount(), 2);
        centre.markAllRead();
        QCOMPARE(centre.unreadCount(), 0);
        QCOMPARE(centre.add("Again", 0, id), id);
        QCOMPARE(centre.unreadCount(), 1);
        QCOMPARE(centre.find(id).value("expired"), false);
        centre.expire(id);
        QCOMPARE(ended.size(), 4);
        centre.setLimit(2);
        centre.add("Pending");
        QCOMPARE(all(centre), "Pending Resident");
        centre.clear();
        QCOMPARE(closed.size(), 4);
        QCOMPARE(ended.size(), 5);
    }

    void fewPopUpForAWhile()
    {
        Centre centre;
        centre.add("Before");
        NotificationPopups popups;
        const QAbstractItemModelTester tester(&popups);
        popups.setDuration(1);
        popups.setMaximum(2);
        const QVariantMap critical { { "urgency", 2 } };
        const uint first = centre.add("First", 0, 0, critical);
        centre.add("Gone");
        QTRY_COMPARE(all(popups), "Gone First");
        QTRY_COMPARE(all(popups), "First");
        QCOMPARE(all(centre), "Gone First Before");

        popups.setHeld(true);
        const uint held = centre.add("Held", 1);
        centre.add("Late");
        QCoreApplication::processEvents();
        QCOMPARE(all(popups), "Held First");
        popups.setHeld(false);
        QCOMPARE(all(popups), "Late First");
        QTRY_COMPARE(centre.indexOf(held), -1);

        popups.setQuiet(true);
        QCOMPARE(all(popups), "First");
        const uint transient = centre.add("Transient", 0, 0, { { "transient", true } });
        centre.add("Second", 0, 0, critical);
        const uint third = centre.add("Third", 0, 0, critical);
        QTRY_COMPARE(all(popups), "Third Second");
        QCOMPARE(centre.indexOf(transient), -1);
        popups.close(third);
        QCOMPARE(all(popups), "Second First");
        QVERIFY(centre.indexOf(third) >= 0);
        centre.add("Anew", 0, third, critical);
        QTRY_COMPARE(all(popups), "Anew Second");
        popups.setQuiet(false);
        centre.add("Less", 0, first);
        centre.clear();
        QCOMPARE(popups.count(), 0);
    }

    void programsAskForSilence()
    {
        Centre centre;
        NotificationPopups popups;
        QTRY_VERIFY(centre.isRegistered());
        QSignalSpy changed(&centre, &Notifications::inhibitedChanged);
        QProcess peer;
        peer.start("/usr/bin/python3", { INHIBITINGPEER });
        QTRY_COMPARE(centre.inhibitions().size(), 16);
        const QVariantMap first { { "appId", "org.example.slides" }, { "reason", "0" } };
        QCOMPARE(centre.inhibitions().value(0), first);
        centre.add("Silent");
        centre.add("Critical", 0, 0, { { "urgency", 2 } });
        QTRY_COMPARE(all(popups), "Critical");
        peer.write("\n");
        QTRY_COMPARE(centre.inhibitions().size(), 15);
        centre.setDoNotDisturb(true);
        peer.kill();
        QTRY_COMPARE(centre.inhibitions().size(), 0);
        QVERIFY(centre.isInhibited());
        centre.setDoNotDisturb(false);
        QCOMPARE(changed.size(), 2);
        peer.waitForFinished();
        QCOMPARE(peer.readAll(), "LimitsExceeded True\n");
    }

    void slotsMayDoAnything()
    {
        Centre centre;
        for (const bool deletes : { false, true }) {
            QPointer<NotificationPopups> popups(new NotificationPopups);
            popups->setMaximum(1);
            connect(popups, &NotificationPopups::rowsInserted, &centre, [&] {
                if (deletes)
                    delete popups;
                else
                    centre.clear();
            });
            centre.add("One", 0, 0, { { "transient", true } });
            centre.add("Two", 0, 0, { { "transient", true } });
            QTRY_COMPARE(popups.isNull() ? 0 : centre.count(), 0);
            delete popups;
        }
    }
};

QTEST_MAIN(PopupsTest)
#include "tst_popups.moc"
