#include "imagestore.h"
#include "notifications.h"
#include "patience.h"
#include "signallog.h"

#include <QAbstractItemModelTester>
#include <QDBusConnectionInterface>
#include <QQmlApplicationEngine>
#include <QWindow>
#include <QtTest>

namespace {

struct Peer : QProcess
{
    Peer(const QString &program, const QStringList &arguments) { start(program, arguments); }
    ~Peer() override
    {
        kill();
        waitForFinished();
    }
    // What it has printed by its end.
    QString result()
    {
        return QTest::qWaitFor([this] { return state() == NotRunning; }, patience)
                       ? QString(readAll()).simplified()
                       : "no end";
    }
};

// The protocol's methods begin with a capital, the others are those of the manager.
QString call(const QString &method, const QStringList &arguments = {})
{
    const QString name = method[0].isUpper() ? "org.freedesktop.Notifications"
                                             : "com.zovar.NotificationManager";
    const QString path = '/' + QString(name).replace('.', '/');
    const QStringList line { "call", "-e", "-d", name, "-o", path, "-m", name + '.' + method };
    return Peer("gdbus", line + arguments).result();
}

struct Centre : Notifications
{
    QString all(const QString &role = "summary") const
    {
        QStringList values;
        for (int row = 0; row < rowCount(); ++row)
            values += get(row).value(role).toString();
        return values.join(' ');
    }
    uint add(const QString &text, int timeout = 0, uint replaces = 0, const QVariantMap &hints = {})
    {
        return post({ "Test", replaces, {}, text, text, { "a", "A" }, hints, timeout, 0, {} });
    }
    QAbstractItemModelTester tester { this, QAbstractItemModelTester::FailureReportingMode::Fatal };
};

} // namespace

class NotificationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsSentIsReadSafely_data()
    {
        for (const char *column : { "role", "sent", "value" })
            QTest::addColumn<QString>(column);
        QFile file(CASES);
        QVERIFY(file.open(QIODevice::ReadOnly));
        static const QRegularExpression line("^(\\w+)  +(.+?)(  +(.*))?$",
                                             QRegularExpression::MultilineOption);
        for (auto found = line.globalMatch(file.readAll()); found.hasNext();) {
            const auto match = found.next();
            QTest::newRow(qPrintable(match.captured().simplified()))
                    << match.captured(1) << match.captured(2) << match.captured(4);
        }
    }
    void whatIsSentIsReadSafely()
    {
        QFETCH(QString, role);
        QFETCH(QString, sent);
        QFETCH(QString, value);
        Centre centre;
        QTRY_VERIFY(centre.isRegistered());
        if (role == "styledBody")
            centre.add(sent.replace("\\r\\n", "\r\n\1"));
        else
            QVERIFY(call("Notify", { "App", "0", "", "Title", "Body", "['a']", sent, "0" })
                            .contains("uint32"));
        QTRY_COMPARE(centre.rowCount(), 1);
        QString read = centre.all(role);
        const QImage image = ImageStore::find(read);
        if (!image.isNull())
            read = QString("%1x%2 ").arg(image.width()).arg(image.height())
                   + image.pixelColor(0, 0).name(QColor::HexArgb);
        QCOMPARE(read, value.replace("ICON", "image://quorvane/icon"));
    }

    void replacingMeansTheSendersOwn()
    {
        Centre centre;
        QTRY_VERIFY(centre.isRegistered());
        Peer peer("/usr/bin/python3", { NOTIFYINGPEER });
        QTRY_COMPARE(centre.all(), "Volume GIO");
        const QString chat = Peer("notify-send", { "-p", "Chat" }).result();
        peer.write("\n");
        QTRY_COMPARE(centre.all(), "Chat Louder GIO");
        // A script's next process knows the id that was printed, or has a number of its own.
        QCOMPARE(Peer("notify-send", { "-p", "-r", chat, "Other" }).result(), chat);
        const QString own = Peer("notify-send", { "-p", "-r", "7", "Seven" }).result();
        QCOMPARE(Peer("notify-send", { "-p", "-r", "7", "Eight" }).result(), own);
        QVERIFY(centre.add("Test", 0, 7) > own.toUInt());
        QTRY_COMPARE(centre.all(), "Test Eight Other Louder GIO");
        centre.clear();
        QCOMPARE(peer.result(), "2");
    }

    void answersAndEndingsAreTold()
    {
        Centre centre;
        QTRY_VERIFY(centre.isRegistered());
        Peer peer("notify-send", { "-u", "critical", "-t", "1", "-A", "default=Open", "-A",
                                   "yes=Yes", "Question" });
        QTRY_COMPARE(centre.rowCount(), 1);
        const QString id = centre.all("id");
        const QVariantMap yes { { "key", "yes" }, { "text", "Yes" } };
        QCOMPARE(centre.get(0).value("actions"), QVariantList { yes });
        QVERIFY(centre.get(0).value("hasDefault").toBool());
        SignalLog log({ &centre });
        centre.invoke(id.toUInt(), "unknown");
        QCOMPARE(call("listAction", { id }), "(['default', 'Open', 'yes', 'Yes'],)");
        call("returnAction", { id, "yes" });
        QCOMPARE(peer.result(), "yes");

        const uint resident = centre.add("Resident", 0, 0, { { "resident", true } });
        const uint other = centre.add("Other");
        centre.invoke(resident, "a");
        QCOMPARE(call("listPending"), QString("([uint32 %1, %2],)").arg(resident).arg(other));
        call("CloseNotification", { QString::number(resident) });
        call("close", { QString::number(other), "7" });
        centre.dismiss(other);
        QCOMPARE(log.lines.filter("closed"),
                 QStringList({ "closed " + id + " 2", QString("closed %1 3").arg(resident),
                               QString("closed %1 7").arg(other) }));
    }

    void timeOutsAreThoseOfTheLastPost()
    {
        Centre centre;
        centre.add("Critical", 1, 0, { { "urgency", 2 } });
        centre.add("Default", -1);
        const uint kept = centre.add("Kept", 300);
        const uint shortened = centre.add("Short", 100000);
        QTRY_COMPARE(centre.rowCount(), 4);
        centre.setDefaultTimeout(100);
        centre.add("Kept", 0, kept);
        centre.add("Gone", -1);
        centre.add("Short", 600, shortened);
        QSignalSpy closed(&centre, &Notifications::closed);
        QTRY_COMPARE(closed.size(), 2);
        QCOMPARE(closed[1], (QVariantList { shortened, 1U }));
        QCOMPARE(centre.all(), "Kept Default Critical");
    }

    void aFloodIsOneChange()
    {
        Centre centre;
        SignalLog log({ &centre });
        for (int i = 0; i < 10000; ++i)
            centre.add(QString::number(i), 0, centre.add("First"));
        QTRY_COMPARE(centre.rowCount(), 1000);
        QCOMPARE(log.lines.filter(QRegularExpression("^(rowsI|replaced|posted)")).size(), 1001);
        centre.setLimit(2);
        QCOMPARE(centre.all(), "9999 9998");
        centre.add(QString(20000, 'b'));
        QTRY_COMPARE(centre.all("body").size(), 16384 + 5);
        QCOMPARE(centre.all().size(), 1024 + 5);
    }

    void theNameIsTakenOver()
    {
        const auto isTaken = [] {
            return QDBusConnection::sessionBus().interface()->isServiceRegistered(
                    "org.freedesktop.Notifications");
        };
        QTRY_VERIFY(!isTaken());
        Peer other(SERVICE, {});
        QTRY_VERIFY(isTaken());
        auto first = std::make_unique<Centre>();
        const Centre second;
        QTRY_COMPARE(first->owner().value("pid"), other.processId());
        QCOMPARE(first->owner().value("name"), "notificationser");
        QVERIFY(!first->isRegistered());
        other.closeWriteChannel();
        QTRY_VERIFY(first->isRegistered() && first->owner().isEmpty());
        QVERIFY(!second.isRegistered());
        first.reset();
        QTRY_VERIFY(second.isRegistered());
        Peer("notify-send", { "Title" }).result();
        QTRY_COMPARE(second.all(), "Title");
    }

    void theExampleIsACentre()
    {
        QQmlApplicationEngine engine;
        engine.addImportPath(IMPORT_PATH);
        engine.load(QUrl::fromLocalFile(EXAMPLE));
        auto *window = qobject_cast<QWindow *>(engine.rootObjects().value(0));
        QTRY_COMPARE(window->title(), "Notifications");
        Peer peer("notify-send", { "-A", "default=Open", "Question" });
        QTRY_COMPARE(call("nbNotifications"), "(1,)");
        QTest::mouseClick(window, Qt::LeftButton, {}, { 10, 10 });
        QCOMPARE(peer.result(), "default");
    }
};

QTEST_MAIN(NotificationsTest)
#include "tst_notifications.moc"
