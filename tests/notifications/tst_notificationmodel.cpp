#include <quorvane/notifications/notificationactions.h>
#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notificationmessage.h>
#include <quorvane/notifications/notificationserver.h>
#include <quorvane/notifications/notifier.h>

#include "messages.h"

#include <QtTest>

using namespace xdg;

// Writes down the signals of objects, in order: their names and arguments, an index as its row.
class Log : public QObject
{
public:
    void listen(const QObject *sender)
    {
        const QMetaObject *meta = sender->metaObject();
        for (int i = 0; i < meta->methodCount(); ++i) {
            const QMetaMethod method = meta->method(i);
            if (method.methodType() == QMetaMethod::Signal
                && !(method.attributes() & QMetaMethod::Cloned))
                QMetaObject::connect(sender, i, this, QObject::staticMetaObject.methodCount() + i);
        }
    }
    int qt_metacall(QMetaObject::Call, int id, void **arguments) override
    {
        const QMetaMethod signal = sender()->metaObject()->method(senderSignalIndex());
        QStringList words { signal.name() };
        for (int i = 0; i < signal.parameterCount(); ++i) {
            const QVariant value(signal.parameterType(i), arguments[i + 1]);
            if (value.canConvert<QModelIndex>())
                words += QString::number(value.toModelIndex().row());
            else
                words += value.toString();
        }
        if (words[0] != "rowsInserted" && words[0] != "rowsRemoved") // The other half is enough.
            _lines += words.join(' ').trimmed();
        return id - 1 - QObject::staticMetaObject.methodCount();
    }
    QString take() { return std::exchange(_lines, {}).join(", "); }

private:
    QStringList _lines;
};

// No test here has a bus.
class TestNotificationModel : public QObject
{
    Q_OBJECT

    uint post(uint replaces = 0, const QString &summary = "s", int timeout = 0)
    {
        return serverNotify(_manager.data(), "app", replaces, "icon", summary, "app", { "k", "K" },
                            { { "h", 1 } }, timeout);
    }
    QVariant data(int row, int role) const { return _manager->index(row).data(role); }

    QScopedPointer<Messages> _messages;
    QScopedPointer<NotificationManager> _manager;
    Log _log;

private Q_SLOTS:
    void init()
    {
        _messages.reset(new Messages);
        _manager.reset(new NotificationManager);
        _log.listen(_manager.data());
        _log.listen(_manager->findChild<XdgNotificationServer *>());
    }

    void cleanup()
    {
        _manager.reset();
        _messages.reset();
        _log.take();
    }

    void missingBusIsToldByEachClass()
    {
        const QString missing = "default warning: Cannot connect to the D-Bus session bus.\n"
                                "Please check your system settings and try again.\n";
        QCOMPARE(_messages->take(), QStringList({ missing,
                                                  "default warning: Can't register dbus service  "
                                                  "\"org.freedesktop.Notifications\"",
                                                  missing }));
        XdgNotifier notifier;
        QCOMPARE(_messages->take(), QStringList(missing));
        notifier.notify("s", "b", false, { "odd" }, 0);
        notifier.closeNotification();
        QCOMPARE(_messages->take(), QStringList());
    }

    void updateReportsWhatChanged_data()
    {
        QTest::addColumn<QString>("values"); // Name, icon, summary, body, action, hint, time-out.
        QTest::addColumn<QString>("expected");

        QTest::newRow("nothing new reports the body") << "a i s b k 1 0"
                                                      << "bodyChanged b";
        QTest::newRow("all, in order") << "A I S B K 2 -1"
                                       << "appNameChanged A, appIconChanged I, summaryChanged S, "
                                          "bodyChanged B, actionsChanged K, hintsChanged, "
                                          "timeoutChanged -1";
        QTest::newRow("body of the new name stays") << "b i s B k 1 0"
                                                    << "appNameChanged b";
        QTest::newRow("body becomes the name") << "a i s a k 1 0"
                                               << "bodyChanged a";
    }

    void updateReportsWhatChanged()
    {
        QFETCH(QString, values);
        const QStringList value = values.split(' ');
        NotificationMessage message("a", "i", "s", "b", { "k" }, { { "h", "1" } }, 0);
        _log.listen(&message);
        message.update(value[0], value[1], value[2], value[3], { value[4] }, { { "h", value[5] } },
                       value[6].toInt());
        QTEST(_log.take(), "expected");
    }

    void messageExpiresAtItsEarliestDeadline_data()
    {
        QTest::addColumn<QList<int>>("timeouts"); // The first one, and those of updates.
        QTest::addColumn<int>("expiries");        // Of those that fall due within a short while.

        QTest::newRow("0 and -1 stay") << QList<int> { 0, -1 } << 0;
        QTest::newRow("raising keeps the deadline") << QList<int> { 1, 600000 } << 1;
        QTest::newRow("lowering adds an earlier one") << QList<int> { 600000, 1 } << 1;
        QTest::newRow("0 takes nothing back") << QList<int> { 1, 0 } << 1;
        QTest::newRow("each update adds one") << QList<int> { 1, 1, 2 } << 3;
    }

    void messageExpiresAtItsEarliestDeadline()
    {
        QFETCH(QList<int>, timeouts);
        NotificationMessage message("a", "i", "s", "b", {}, {}, timeouts.takeFirst());
        QSignalSpy expired(&message, &NotificationMessage::expired);
        for (const int timeout : qAsConst(timeouts))
            message.update("a", "i", "s", "b", {}, {}, timeout);
        NotificationMessage later("a", "i", "s", "b", {}, {}, 50);
        QVERIFY(QSignalSpy(&later, &NotificationMessage::expired).wait());
        QTEST(expired.size(), "expiries");
    }

    void newestIsRowZero()
    {
        QCOMPARE(post(0, "first"), 1u);
        QCOMPARE(post(99, "second"), 2u);
        QCOMPARE(_log.take(), QString("rowsAboutToBeInserted -1 0 0, notificationsChanged, "
                                      "rowsAboutToBeInserted -1 0 0, notificationsChanged"));
        QCOMPARE(_manager->listPending(), QList<uint>({ 1, 2 }));
        QCOMPARE(_manager->property("nbNotifications"), QVariant(2));
        QStringList values;
        for (const char *role : { "appName", "appIcon", "summary", "body", "display", "appId" })
            values += data(0, _manager->roleNames().key(role)).toString();
        QCOMPARE(values.join(' '), QString("app icon second app app 2"));
        QCOMPARE(data(0, _manager->roleNames().key("actions")), QVariant(QStringList { "k", "K" }));
        QCOMPARE(data(0, _manager->roleNames().key("hints")), QVariant(QVariantMap { { "h", 1 } }));
        QCOMPARE(data(0, NotificationManager::AppIdRole + 1), QVariant());
        QCOMPARE(data(1, NotificationManager::AppIdRole), QVariant(1u));
    }

    void replacingKeepsTheRowAndReportsTheFirstOne()
    {
        post(1);
        post(4294967295u);
        post();
        _log.take();
        QSignalSpy changed(_manager.data(), &NotificationManager::dataChanged);
        QCOMPARE(post(1, "new"), 3u);
        QCOMPARE(data(2, NotificationManager::SummaryRole), QVariant("new"));
        post(2, "new");
        post(3, "new");
        QCOMPARE(_log.take(), QString("dataChanged 1 1, dataChanged -1 -1, dataChanged 0 0"));
        QCOMPARE(changed[0][2].value<QVector<int>>(), { NotificationManager::SummaryRole });
    }

    void notificationMayGoInTheMiddleOfItsReplacement()
    {
        post();
        connect(_manager.data(), &NotificationManager::dataChanged, this, [this] {
            _manager->close(1);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // A dialogue does.
        });
        QSignalSpy changed(_manager.data(), &NotificationManager::dataChanged);
        QCOMPARE(post(1, "new"), 1u);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(_manager->nbNotifications(), 0);
    }

    void everyWayOutTellsItsReason()
    {
        for (int i = 0; i < 4; ++i)
            post(0, "s", i == 3 ? 1 : 0);
        auto *late = _manager->findChild<NotificationMessage *>();
        const QModelIndex stale = _manager->index(1);
        _log.take();
        const auto left = [](const char *row) {
            return QString("rowsAboutToBeRemoved -1 %1 %1, notificationsChanged, ").arg(row);
        };
        QTRY_COMPARE(_manager->nbNotifications(), 3);
        QCOMPARE(_log.take(), left("0") + "NotificationClosed 4 1");
        _manager->findChild<XdgNotificationServer *>()->CloseNotification(1);
        QCOMPARE(_log.take(), left("2") + "NotificationClosed 1 3, closeNotification 1");
        _manager->returnAction(2, "x");
        QCOMPARE(_log.take(), "ActionInvoked 2 x, " + left("1") + "NotificationClosed 2 2");
        QCOMPARE(_manager->data(stale, Qt::DisplayRole), QVariant());
        _manager->close(3, 7);
        QCOMPARE(_log.take(), left("0") + "NotificationClosed 3 7");
        QCOMPARE(_manager->data(stale, Qt::DisplayRole), QVariant());
        QMetaObject::invokeMethod(late, "_expired"); // A deadline before the deferred deletion.
        QCOMPARE(_log.take(), left("-1") + "NotificationClosed 0 1");
        _manager->close(9);
        QCOMPARE(_log.take(), left("-1") + "NotificationClosed 9 2");
        QTRY_VERIFY(_manager->findChildren<NotificationMessage *>().isEmpty());
        QCOMPARE(post(), 5u);
        QCOMPARE(serverNotify(this, "a", 0, "i", "s", "b", {}, {}, 0), 0u);
    }

    void actionsBecomeRows_data()
    {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QStringList>("list");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<QString>("expected");

        const QString reset = "modelAboutToBeReset, modelReset, actionslistChanged";
        const QStringList none, pair { "a", "A" }, one { "a" };
        QTest::newRow("empty on a fresh model") << none << none << ""
                                                << "";
        QTest::newRow("pairs") << none << pair + QStringList { "b", "B" } << "aAbB" << reset;
        QTest::newRow("equal") << pair << pair << "aA"
                               << "";
        QTest::newRow("emptied") << pair << none << "" << reset;
        QTest::newRow("three") << none << pair + one << "aA" << reset;
        QTest::newRow("one") << none << one << "" << reset;
        QTest::newRow("equal and odd") << one << one << ""
                                       << "";
    }

    void actionsBecomeRows()
    {
        QFETCH(QStringList, before);
        QFETCH(QStringList, list);
        NotificationActions actions;
        actions.setActionslist(before);
        _messages->take();
        _log.listen(&actions);
        actions.setProperty("actionslist", list);
        QTEST(_log.take(), "expected");
        QCOMPARE(
                _messages->take().value(0).startsWith("default warning: Error in actionlist: (\"a"),
                list.size() % 2 == 1);
        QCOMPARE(actions.property("actionslist"), QVariant(list));
        QString rows;
        for (int row = 0; row < actions.rowCount(); ++row) {
            rows += actions.index(row).data(actions.roleNames().key("key")).toString();
            rows += actions.index(row).data(actions.roleNames().key("actionText")).toString();
        }
        QTEST(rows, "rows");
        const QModelIndex stale = actions.index(actions.rowCount() - 1);
        actions.setActionslist({});
        QCOMPARE(actions.data(stale, Qt::DisplayRole).toString(), QString());
    }
};

QTEST_GUILESS_MAIN(TestNotificationModel)
#include "tst_notificationmodel.moc"
