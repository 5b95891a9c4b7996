#include <quorvane/notifications/notificationactions.h>
#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notificationmessage.h>
#include <quorvane/notifications/notificationserver.h>

#include "messages.h"
#include "patience.h"
#include "signallog.h"

using namespace xdg;

// No test here has a bus.
class TestNotificationModel : public QObject
{
    Q_OBJECT

    static uint post(QObject *manager, uint replaces, const QString &text, int timeout = 0)
    {
        return serverNotify(manager, "app", replaces, text + ".png", "S " + text, "B " + text,
                            { text }, { { "hint", text } }, timeout);
    }
    // Number, name and value of each role that has one.
    static QString rowData(const QModelIndex &index)
    {
        QStringList values;
        for (int role = 0; role < 2 * Qt::UserRole; ++role) {
            const QString name = index.model()->roleNames()[role];
            if (const QVariant value = index.data(role); value.isValid())
                values += QString("%1 %2=%3").arg(role).arg(name, value.toString());
        }
        return values.join(", ");
    }

private Q_SLOTS:
    void withoutAManagerNothingIsTaken()
    {
        XdgNotificationServer server;
        QCOMPARE(server.Notify("a", 7, "i", "s", "b", { "k" }, {}, -1), 0u);
        QCOMPARE(post(&server, 0, "text"), 0u);
    }

    void updateReportsWhatChanged()
    {
        NotificationMessage message("a", "i", "s", "b", { "k" }, { { "h", "1" } }, 0);
        SignalLog log({ &message });
        connect(&message, &NotificationMessage::summaryChanged, this,
                [&](const QString &summary) { QCOMPARE(message.summary(), summary); });
        // The seven values of an update in their order, of the actions and hints one each.
        const auto update = [&](const QString &values) {
            const QStringList v = values.split(' ');
            message.update(v[0], v[1], v[2], v[3], { v[4] }, { { "h", v[5] } }, v[6].toInt());
            return log.take();
        };
        QCOMPARE(update("a i s b k 1 0"), QString("bodyChanged b"));
        QCOMPARE(update("A I S B K 2 -1"),
                 QString("appNameChanged A, appIconChanged I, summaryChanged S, bodyChanged B, "
                         "actionsChanged K, hintsChanged, timeoutChanged -1"));
        // A body that reads like the new name keeps its text.
        QCOMPARE(update("B I S x K 2 -1"), QString("appNameChanged B"));
        QCOMPARE(update("x I S x K 2 -1"), QString("appNameChanged x, bodyChanged x"));
    }

    void deadlinesOnlyAddUp()
    {
        // Of a message with these time-outs: the first one and those of updates.
        const auto expiriesWithinShort = [](QList<int> timeouts) {
            NotificationMessage message("a", "i", "s", "b", {}, {}, timeouts.takeFirst());
            const QSignalSpy expired(&message, &NotificationMessage::expired);
            for (const int timeout : qAsConst(timeouts))
                message.update("a", "i", "s", "b", {}, {}, timeout);
            const NotificationMessage later("a", "i", "s", "b", {}, {}, 50);
            QSignalSpy(&later, &NotificationMessage::expired).wait();
            return expired.count({ QVariant::fromValue<QObject *>(&message) });
        };
        QCOMPARE(expiriesWithinShort({ 0, -1 }), 0);
        QCOMPARE(expiriesWithinShort({ 1, 600000 }), 1);
        QCOMPARE(expiriesWithinShort({ 600000, 1, 0 }), 1);
        QCOMPARE(expiriesWithinShort({ 1, 1, 2 }), 3);
    }

    void changesAreReportedForTheNumberNamedAtFirst()
    {
        NotificationManager manager;
        QCOMPARE(post(&manager, 1, "old"), 1u);
        QCOMPARE(post(&manager, 4294967295u, "old", -1), 2u);
        SignalLog log({ &manager });
        QCOMPARE(post(&manager, 0, "old"), 3u);
        QCOMPARE(log.take(),
                 QString("rowsAboutToBeInserted 0 0, notificationsChanged, rowsInserted 0 0"));

        QStringList changes;
        connect(&manager, &NotificationManager::dataChanged, this,
                [&](const QModelIndex &index, auto, const QVector<int> &roles) {
                    changes += QString("%1 %2").arg(index.row()).arg(roles.value(0));
                });
        for (const uint id : { 1u, 2u, 3u })
            QCOMPARE(post(&manager, id, "old"), 3u); // Nothing new reports the body.
        post(&manager, 1, "new");
        QCOMPARE(changes.join(", "),
                 QString("1 260, -1 260, 0 260, 1 258, 1 259, 1 260, 1 261, 1 262"));
        QCOMPARE(rowData(manager.index(2)),
                 QString("0 display=app, 257 appName=app, 258 appIcon=new.png, 259 summary=S new, "
                         "260 body=B new, 261 actions=new, 262 hints=, 263 appId=1"));
        QCOMPARE(manager.index(2).data(262), QVariant(QVariantMap { { "hint", "new" } }));
    }

    void notificationMayGoInTheMiddleOfItsReplacement()
    {
        NotificationManager manager;
        post(&manager, 0, "old");
        connect(&manager, &NotificationManager::dataChanged, this, [&manager] {
            manager.close(1);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // A dialogue does.
        });
        const QSignalSpy changed(&manager, &NotificationManager::dataChanged);
        QCOMPARE(post(&manager, 1, "new"), 1u);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(manager.nbNotifications(), 0);
    }

    void closingTellsModelThenPeers()
    {
        NotificationManager manager;
        auto *server = manager.findChild<XdgNotificationServer *>();
        for (const int timeout : { 0, 0, 0, 1 })
            post(&manager, 0, "text", timeout);
        auto *late = manager.findChild<NotificationMessage *>();
        const QModelIndex stale = manager.index(1);
        SignalLog log({ &manager, server });
        const QString left = "rowsAboutToBeRemoved %1 %1, notificationsChanged, "
                             "rowsRemoved %1 %1, NotificationClosed ";
        QTRY_COMPARE(manager.nbNotifications(), 3);
        QCOMPARE(log.take(), left.arg(0) + "4 1");
        server->CloseNotification(1);
        QCOMPARE(log.take(), left.arg(2) + "1 3, closeNotification 1");
        manager.returnAction(2, "x");
        QCOMPARE(log.take(), "ActionInvoked 2 x, " + left.arg(1) + "2 2");
        QCOMPARE(rowData(stale), QString()); // The row behind the last one.
        manager.close(3, 7);
        QCOMPARE(log.take(), left.arg(0) + "3 7");
        QMetaObject::invokeMethod(late, "_expired"); // A deadline before the deferred deletion.
        QCOMPARE(log.take(), left.arg(-1) + "0 1");
        manager.close(9);
        QCOMPARE(log.take(), left.arg(-1) + "9 2");
        QTRY_VERIFY(manager.findChildren<NotificationMessage *>().isEmpty());
        QCOMPARE(post(&manager, 0, "text"), 5u);
    }

    void actionsBecomeRows()
    {
        NotificationActions actions;
        SignalLog log({ &actions });
        Messages messages;
        const auto set = [&](const QStringList &list) {
            actions.setProperty("actionslist", list);
            return messages.take().join(' ') + log.take() + QString(" %1").arg(actions.rowCount());
        };
        const QString reset = "modelAboutToBeReset, modelReset, actionslistChanged";
        const QString odd = "default warning: Error in actionlist: (\"a\")";
        QCOMPARE(set({ "a" }), odd + reset + " 0");
        QCOMPARE(set({ "a" }), odd + " 0");
        QCOMPARE(actions.property("actionslist"), QVariant(QStringList("a")));
        QCOMPARE(set({ "a", "A", "b", "B" }), reset + " 2");
        const QModelIndex stale = actions.index(1);
        QCOMPARE(rowData(stale), QString("0 display=B, 257 key=b, 258 actionText=B"));
        QCOMPARE(set({ "c", "C" }), reset + " 1");
        QCOMPARE(rowData(stale), QString("0 display=, 257 key=, 258 actionText="));
        QCOMPARE(set({}), reset + " 0");
        QCOMPARE(rowData(stale), QString());
    }
};

QTEST_GUILESS_MAIN(TestNotificationModel)
#include "tst_notificationmodel.moc"
