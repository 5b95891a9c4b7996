#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notificationsinterface.h>
#include <quorvane/notifications/notifier.h>

#include "messages.h"

#include <QtDBus>
#include <QtTest>

Q_DECLARE_METATYPE(QVariantList)

// The service is another process. This one is its peer, of which nothing good is expected.
class TestNotificationService : public QObject
{
    Q_OBJECT

    static QDBusMessage message(const QString &method, const QVariantList &arguments)
    {
        const QString name = method.front().isLower() ? "com.zovar.NotificationManager"
                                                      : "org.freedesktop.Notifications";
        QDBusMessage call = QDBusMessage::createMethodCall(
                name, QString("/" + name).replace('.', '/'), name, method);
        call.setArguments(arguments);
        return call;
    }
    static QDBusMessage call(const QString &method, const QVariantList &arguments = {})
    {
        return QDBusConnection::sessionBus().call(message(method, arguments), QDBus::Block, 120000);
    }
    static QVariantList post(const QString &body, const QStringList &actions = {},
                             const QVariantMap &hints = {}, uint replaces = 0)
    {
        return { "app", replaces, "", "summary", body, actions, hints, 0 };
    }
    static QList<uint> pending() { return QDBusReply<QList<uint>>(call("listPending")).value(); }
    static QVariantMap nested(int levels)
    {
        QVariant value = 1;
        for (int i = 0; i < levels; ++i)
            value = QVariant::fromValue(QDBusVariant(value));
        return { { "nested", value } };
    }

    void start(const char *kind)
    {
        _service.setReadChannel(QProcess::StandardOutput);
        _service.start(SERVICE, { kind });
        QVERIFY(_service.waitForReadyRead());
        _service.readAllStandardOutput();
    }
    // Fails when the service has not lived up to now or ends with a fault.
    void stop()
    {
        _service.closeWriteChannel();
        QVERIFY(_service.waitForFinished());
        QCOMPARE(_service.exitStatus() + _service.exitCode(), 0);
        auto *bus = QDBusConnection::sessionBus().interface();
        QTRY_VERIFY(!bus->isServiceRegistered("org.freedesktop.Notifications"));
    }
    QString logged()
    {
        _service.setReadChannel(QProcess::StandardError);
        while (!_service.canReadLine() && _service.waitForReadyRead()) { }
        return QString::fromUtf8(_service.readLine()).trimmed();
    }

    QProcess _service;
    QMap<uint, QList<uint>> _closed;
    OrgFreedesktopNotificationsInterface _proxy { "org.freedesktop.Notifications",
                                                  "/org/freedesktop/Notifications",
                                                  QDBusConnection::sessionBus() };

private Q_SLOTS:
    void initTestCase()
    {
        QGuiApplication::setApplicationDisplayName("Mail");
        connect(&_proxy, &OrgFreedesktopNotificationsInterface::NotificationClosed, this,
                [this](uint id, uint reason) { _closed[id] += reason; });
    }

    void init()
    {
        _closed.clear();
        start("manager");
        // Qt may reorder what reaches a program before its event loop runs.
        QCOMPARE(pending(), QList<uint>());
    }

    void cleanup() { stop(); }

    void anyIdIsHarmless_data()
    {
        QTest::addColumn<uint>("id");

        for (const uint id : { 0u, 5u, 4294967295u })
            QTest::addRow("%u", id) << id;
    }

    void anyIdIsHarmless()
    {
        QFETCH(uint, id);
        call("Notify", post("kept"));
        QCOMPARE(call("Notify", post("new", {}, {}, id)).arguments().value(0), QVariant(2u));
        QCOMPARE(call("CloseNotification", { id }).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(call("close", { id }).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(call("close", { id, id }).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(call("returnAction", { id, "key" }).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(call("listAction", { id }).arguments(), QVariantList({ QStringList() }));
        QTRY_COMPARE(_closed.value(id), QList<uint>({ 3, 2, id, 2 }));
        QCOMPARE(pending(), QList<uint>({ 1, 2 }));
    }

    void anyContentIsKept_data()
    {
        QTest::addColumn<QVariantList>("post");

        const QStringList many = QString("key,text,").repeated(10000).split(',');
        QTest::newRow("body of 1 MB") << post(QString(1 << 20, 'x'));
        QTest::newRow("10,000 actions") << post("", many.mid(0, 20000));
        QTest::newRow("odd and equal actions") << post("", { "", "a", "a" });
        // The array of hints, its entry and the variant in it count among the bus's 64 levels.
        QTest::newRow("deepest hints") << post("", {}, nested(61));
        QTest::newRow("odd hints") << post("", {}, { { "", "" }, { "urgency", QStringList("x") } });
    }

    void anyContentIsKept()
    {
        QFETCH(QVariantList, post);
        QCOMPARE(call("Notify", post).arguments().value(0), QVariant(1u));
        post[1] = 1u;
        QCOMPARE(call("Notify", post).arguments().value(0), QVariant(1u));
        QCOMPARE(call("listAction", { 1u }).arguments().value(0), post[5]);
        QCOMPARE(pending(), QList<uint>({ 1 }));
    }

    void wrongSignatureIsAnError_data()
    {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");

        QTest::newRow("nothing") << "Notify" << QVariantList();
        QTest::newRow("one too many") << "Notify" << post("b") + QVariantList { 1 };
        QTest::newRow("signed id") << "CloseNotification" << QVariantList { 1 };
        QTest::newRow("text for a reason") << "close" << QVariantList { 1u, "2" };
        QTest::newRow("signal inside the process") << "closeNotification" << QVariantList { 1u };
    }

    void wrongSignatureIsAnError()
    {
        QFETCH(QString, method);
        QFETCH(QVariantList, arguments);
        call("Notify", post("kept"));
        QCOMPARE(call(method, arguments).errorName(),
                 QString("org.freedesktop.DBus.Error.UnknownMethod"));
        QCOMPARE(pending(), QList<uint>({ 1 }));
    }

    void peersLeaveInMidCall()
    {
        for (int i = 0; i < 50; ++i) {
            auto peer = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "leaving");
            peer.asyncCall(message("Notify", post("b")));
            QDBusConnection::disconnectFromBus("leaving");
        }
        // Deeper than the bus allows: it throws the sender out.
        auto thrown = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "thrown");
        QCOMPARE(thrown.call(message("Notify", post("b", {}, nested(62)))).type(),
                 QDBusMessage::ErrorMessage);
        QDBusConnection::disconnectFromBus("thrown");
        const QVariant id = call("Notify", post("kept")).arguments().value(0);
        QCOMPARE(QVariant(pending().value(pending().size() - 1)), id);
    }

    void floodIsKeptAndClosed()
    {
        const int number = 20000;
        const QDBusConnection bus = QDBusConnection::sessionBus();
        QElapsedTimer timer;
        timer.start();
        for (int n = 1; n <= number; ++n)
            bus.send(message("Notify", post("b", { "n", QString::number(n) })));
        const QList<uint> posted = pending();
        const qint64 posting = timer.restart();
        QCOMPARE(posted.size(), number);
        QCOMPARE(posted.last() - posted.first(), uint(number - 1));
        for (const uint n : { 1u, 9999u, 20000u })
            QCOMPARE(call("listAction", { n }).arguments().value(0).toStringList().value(1).toUInt(),
                     n);

        timer.restart();
        for (const uint id : posted)
            bus.send(message("CloseNotification", { id }));
        QTRY_COMPARE_WITH_TIMEOUT(_closed.size(), number, 120000);
        const qint64 closing = timer.elapsed();
        for (const QList<uint> &reasons : qAsConst(_closed))
            QCOMPARE(reasons, { 3u });
        QCOMPARE(pending(), QList<uint>());
        qInfo("posted %d in %lld ms, closed %d in %lld ms, lost 0, doubled 0", posted.size(),
              posting, _closed.size(), closing);
    }

    void secondManagerIsUnreachableButWorks()
    {
        Messages messages;
        xdg::NotificationManager second;
        QCOMPARE(messages.take(), QStringList("default warning: Can't register dbus service  "
                                              "\"org.freedesktop.Notifications\""));
        QCOMPARE(xdg::serverNotify(&second, "a", 0, "", "s", "b", {}, {}, 0), 1u);
        QCOMPARE(pending(), QList<uint>());
        call("Notify", post("b"));
        call("Notify", post("b"));
        QCOMPARE(pending(), QList<uint>({ 1, 2 }));
        QCOMPARE(second.listPending(), QList<uint>({ 1 }));
    }

    void notifierRemembersItsLastNewPost()
    {
        Messages messages;
        XdgNotifier notifier;
        notifier.notify("s", "b", true, {}, 0);
        notifier.notify("s", "b", false, { "k", "K" }, 0);
        notifier.notify("s", "b", false, { "k", "K" }, 0);
        call("Notify", post("b"));
        notifier.notify("s", "b", true, { "new" }, 0); // The answer is 4.
        QCOMPARE(call("listAction", { 3u }).arguments().value(0), QVariant(QStringList("new")));
        notifier.closeNotification();
        notifier.closeNotification();
        QTRY_COMPARE(_closed.value(3), QList<uint>({ 3, 3 }));

        const QString start = "XdgNotificationServer::Notify( \"Mail\" ,  %1 ,  \"\" ,  \"s\" ,  ";
        const QString tail = "\"b\" ,  (\"k\", \"K\") ,  QMap() ,  %2 )";
        stop();
        this->start("bare");
        notifier.notify("s", "b", true, { "k", "K" }, 0);
        QCOMPARE(logged(), start.arg(3) + tail.arg(0));
        stop();
        notifier.notifyTextOnly("s", "b", false); // Nobody is there: the id is forgotten.
        this->start("bare");
        notifier.notifyWithActions("s", "b", true, { "k", "K" });
        QCOMPARE(logged(), start.arg(0) + tail.arg(-1));
        QVERIFY(messages.take().contains("default debug: notifyTextOnly( \"s\" ,  \"b\" )"));
    }

    void notifierHearsEveryOutcome()
    {
        Messages messages;
        XdgNotifier notifier;
        QSignalSpy action(&notifier, &XdgNotifier::actionInvoked);
        QSignalSpy closed(&notifier, &XdgNotifier::notificationClosed);
        call("returnAction", { 9u, "key" });
        for (const uint reason : { 1u, 3u, 4u })
            call("close", { 9u, reason });
        QTRY_COMPARE(closed.size(), 4);
        QCOMPARE(action.value(0).value(0), QVariant("key"));
        QCOMPARE(closed[0][0], QVariant("The notification was dismissed by the user."));
        QCOMPARE(closed[1][0], QVariant("The notification expired."));
        QCOMPARE(closed[2][0],
                 QVariant(" The notification was closed by a call to CloseNotification."));
        QCOMPARE(closed[3][0], QVariant("Undefined/reserved reasons."));
        QCOMPARE(messages.take().mid(0, 2),
                 QStringList({ "default debug: Recive signal ActionInvoked( 9 ,  \"key\" )",
                               "default debug: Recive signal NotificationClosed( 9 ,  2 )" }));
    }
};

QTEST_GUILESS_MAIN(TestNotificationService)
#include "tst_notificationservice.moc"
