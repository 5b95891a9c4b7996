#include "patience.h"
#include "signallog.h"

#include <quorvaneshell/notifications/notifications.h>
#include <quorvaneshell/notifications/notificationservice_p.h>
#include <quorvaneshell/notifications/styledbody_p.h>
#include <quorvaneshell/pictures/imagestore_p.h>

#include <QAbstractItemModelTester>
#include <QDBusConnectionInterface>
#include <QtTest>

using namespace quorvane;

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
QStringList callOf(const QString &method)
{
    const QString name = method[0].isUpper() ? "org.freedesktop.Notifications"
                                             : "com.zovar.NotificationManager";
    const QString path = '/' + QString(name).replace('.', '/');
    return { "call", "-e", "-d", name, "-o", path, "-m", name + '.' + method };
}

QString call(const QString &method, const QStringList &arguments = {})
{
    return Peer("gdbus", callOf(method) + arguments).result();
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
        return service->post(
                { "Test", replaces, {}, text, text, { "a", "A" }, { hints }, timeout, 0, {} });
    }
    // All that was posted is in the list after this.
    void show() { service->list()->pending(); }

    QSharedPointer<NotificationService> service = NotificationService::shared();
    QAbstractItemModelTester tester { this, QAbstractItemModelTester::FailureReportingMode::Fatal };
};

} // namespace

struct Once : QObject
{
    Q_OBJECT

public Q_SLOTS:
    void act()
    {
        if (deed)
            std::exchange(deed, {})();
    }

public:
    std::function<void()> deed;
};

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
        const auto many = [](int number, const QString &text) { return text.repeated(number); };
        QTest::newRow("the 65th hint")
                << "urgency" << '{' + many(64, "'x': <0>, ") + "'urgency': <byte 2>}"
                << "1";
        QTest::newRow("piled marks") << "styledBody" << 'e' + many(9, "\u0301") + "<b>\u0301</b>f"
                                     << 'e' + many(8, "\u0301") + "<b></b>f";
        QTest::newRow("links") << "styledBody" << many(51, "<a href='http://x'>x</a>")
                               << many(50, "<a href=\"http://x\">x</a>") + 'x';
    }
    void whatIsSentIsReadSafely()
    {
        QFETCH(QString, role);
        QFETCH(QString, sent);
        QFETCH(QString, value);
        Centre centre;
        QTRY_VERIFY(centre.isRegistered());
        if (role == "plainText") {
            QCOMPARE(plainText(sent).replace('\n', '|'), value);
            return;
        }
        if (role == "styledBody")
            centre.add(sent.replace("\\r\\n", "\r\n\1"));
        else
            QVERIFY(call("Notify", { "App", "0", "", "Title", "Body", "['a']", sent, "0" })
                            .contains("uint32"));
        QTRY_COMPARE(centre.rowCount(), 1);
        QTRY_COMPARE(centre.all(role).isEmpty(), value.isEmpty());
        QString read = centre.all(role);
        const QImage image = ImageStore::find(read);
        if (!image.isNull())
            read = QString("%1x%2 ").arg(image.width()).arg(image.height())
                   + image.pixelColor(0, 0).name(QColor::HexArgb);
        QCOMPARE(read, value.replace("ICON", "image://quorvane/icon"));
    }

    void whatChangesIsNamed()
    {
        Centre centre;
        const uint id = centre.add("One", 0, 0, { { "action-icons", true }, { "urgency", 2 } });
        centre.show();
        const QVariantMap row = centre.find(id);
        QCOMPARE(row.value("urgency").value<Notifications::Urgency>(), Notifications::Critical);
        const QVariantMap action = row.value("actions").toList().value(0).toMap();
        QCOMPARE(action.value("iconSource"), "image://quorvane/icon/a");
        QSignalSpy changed(&centre, &Notifications::dataChanged);
        centre.add("<b>Two", 0, id, { { "urgency", 2 } });
        centre.show();
        QCOMPARE(centre.index(0).data(Qt::DisplayRole), "<b>Two");
        QCOMPARE(centre.index(0).data(Qt::ToolTipRole), "Two");
        auto roles = changed.value(0).value(2).value<QVector<int>>();
        roles.removeAll(Notifications::TimeRole); // It may be the same millisecond.
        std::sort(roles.begin(), roles.end());
        QCOMPARE(roles, (QVector<int> { Qt::DisplayRole, Qt::ToolTipRole, Notifications::SummaryRole,
                                        Notifications::BodyRole, Notifications::StyledBodyRole,
                                        Notifications::ActionsRole }));
        QVERIFY(centre.find(id + 1).isEmpty());
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
        const QVariantMap yes { { "id", "yes" }, { "text", "Yes" }, { "iconSource", "" } };
        QCOMPARE(centre.get(0).value("actions"), QVariantList { yes });
        QVERIFY(centre.get(0).value("hasDefault").toBool());
        QList<uint> closed;
        connect(&centre, &Notifications::closed, this,
                [&closed](uint id, uint reason) { closed << id << reason; });
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
        QCOMPARE(closed, (QList<uint> { id.toUInt(), 2, resident, 3, other, 7 }));
    }

    void whoPostedIsToldAndMayClose()
    {
        Centre centre;
        QTRY_VERIFY(centre.isRegistered());
        Peer peer("/usr/bin/python3", { ANSWEREDPEER, "own" });
        QTRY_COMPARE(centre.all(), "Own Other");
        const QString id = centre.get(0).value("id").toString();
        const QString other = Peer("notify-send", { "-p", "Third" }).result();
        call("CloseNotification", { "7" });
        QTRY_COMPARE(centre.all(), "Third Own Other");
        centre.dismiss(other.toUInt());
        centre.invoke(id.toUInt(), "b");
        peer.write("\n");
        QCOMPARE(peer.result(), id + " b " + id + " 3");
        QCOMPARE(centre.all(), "Other");
    }

    void aBusyInterfaceIsReadOn()
    {
        Centre centre;
        QTRY_VERIFY(centre.isRegistered());
        QVERIFY(Peer("/usr/bin/python3", { ANSWEREDPEER, "large" }).waitForFinished(patience));
        // Nothing is handled until a program has waited in vain.
        const QStringList inVain { "--timeout", "2" };
        QVERIFY(Peer("gdbus", callOf("GetCapabilities") + inVain).waitForFinished(patience));
        QTRY_COMPARE(centre.rowCount(), 8);
        QVERIFY(call("GetCapabilities").contains("actions"));
    }

    void aPictureIsReadWhenItsPostComes()
    {
        Centre centre;
        QTemporaryDir folder;
        const QString file = folder.filePath("a b.png");
        QImage picture(320, 320, QImage::Format_ARGB32);
        picture.fill(Qt::green);
        QVERIFY(picture.save(file));
        centre.add("Gone", 0, 0, { { "image-path", folder.filePath("none") } });
        centre.add("File", 0, 0, { { "image-path", QUrl::fromLocalFile(file).toString() } });
        QTRY_COMPARE(ImageStore::find(centre.get(0).value("iconSource").toString())
                             .convertToFormat(picture.format()),
                     picture);
        QCOMPARE(centre.get(1).value("iconSource"), "");
        // 81 of them are 32 MB.
        for (int i = 0; i < 82; ++i)
            centre.add("Data", 0, 0, { { "image-data", picture } });
        QTRY_COMPARE(centre.rowCount(), 84);
        QCOMPARE(centre.all("iconSource").split(' ', Qt::SkipEmptyParts).size(), 81);
    }

    void aTagMeansTheSame_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("canonical") << "x-canonical-private-synchronous";
        QTest::newRow("dunst") << "x-dunst-stack-tag";
    }
    void aTagMeansTheSame()
    {
        QFETCH(QString, key);
        Centre centre;
        const uint id = centre.add("1", 0, 0, { { key, "volume" } });
        centre.add("brightness", 0, 0, { { key, "brightness" } });
        QCOMPARE(centre.add("2", 0, 0, { { key, "volume" } }), id);
        QTRY_COMPARE(centre.all(), "brightness 2");
        QCOMPARE(centre.add("3", 0, 0, { { key, "volume" } }), id);
        QTRY_COMPARE(centre.all(), "brightness 3");
    }

    void slotsMayDoAnything_data()
    {
        QTest::addColumn<QByteArray>("signal");
        for (const char *signal :
             { SIGNAL(posted(uint)), SIGNAL(replaced(uint)),
               SIGNAL(closed(uint, quorvane::Notifications::CloseReason)), SIGNAL(countChanged()),
               SIGNAL(rowsInserted(QModelIndex, int, int)),
               SIGNAL(rowsRemoved(QModelIndex, int, int)),
               SIGNAL(dataChanged(QModelIndex, QModelIndex)) })
            QTest::newRow(signal + 1) << QByteArray(signal);
    }
    void slotsMayDoAnything()
    {
        QFETCH(QByteArray, signal);
        QPointer<Centre> first;
        const std::function<void()> deeds[] { [&first] { first->add("Again"); },
                                              [&first] { first->clear(); },
                                              [&first] { delete first; } };
        for (const auto &deed : deeds) {
            first = new Centre;
            const auto owned = qScopeGuard([&first] { delete first; });
            Centre second;
            connect(&second, &Notifications::posted, &second,
                    [&second](uint id) { QVERIFY(second.indexOf(id) >= 0); });
            Once once;
            once.deed = deed;
            connect(first, signal, &once, SLOT(act()));
            const uint kept = second.add("First");
            const uint gone = second.add("Gone");
            second.show();
            second.add("Second", 0, kept);
            second.show();
            second.dismiss(gone);
            second.show();
            QVERIFY(!once.deed);
            QCOMPARE(second.all().contains("Again"), &deed == deeds);
            QCOMPARE(first.isNull(), &deed == deeds + 2);
            QCOMPARE(first ? first->all() : "Second", second.all());
        }
    }

    void theLastOneMayGoWhenItIsRegistered()
    {
        QPointer<Centre> centre(new Centre);
        connect(centre, &Notifications::registeredChanged, this, [&centre] { delete centre; });
        QTRY_VERIFY(!centre);
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
        QCOMPARE(closed[1][0], shortened);
        QCOMPARE(closed[1][1].value<Notifications::CloseReason>(), Notifications::Expired);
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
        Centre second;
        QTRY_COMPARE(first->owner().value("pid"), other.processId());
        QCOMPARE(first->owner().value("name"), "notificationser");
        QVERIFY(!first->isRegistered());
        other.closeWriteChannel();
        QTRY_VERIFY(first->isRegistered() && first->owner().isEmpty());
        first->add("First");
        first.reset();
        QVERIFY(second.isRegistered());
        Peer("notify-send", { "Title" }).result();
        QTRY_COMPARE(second.all(), "Title First");
    }
};

QTEST_MAIN(NotificationsTest)
#include "tst_notifications.moc"
