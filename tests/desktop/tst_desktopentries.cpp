#include <quorvane/desktop/desktopentries.h>

#include "desktopfixture.h"
#include "messages.h"

#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

using xdg::DesktopEntries;

// Instead of libc's: while held, a signal is written down and reaches nobody.
static bool held = false;
using Signals = QList<QPair<pid_t, int>>;
Q_GLOBAL_STATIC(Signals, sent)
extern "C" Q_DECL_EXPORT int kill(pid_t pid, int signal)
{
    if (!held)
        return int(syscall(SYS_kill, pid, signal));
    *sent += { pid, signal };
    return 0;
}

class TestDesktopEntries : public QObject
{
    Q_OBJECT

    QScopedPointer<DesktopFixture> _fixture;

private Q_SLOTS:
    void init() { _fixture.reset(new DesktopFixture); }

    void rolesGiveTheValuesOfTheFile()
    {
        const QString path
                = _fixture->app("org.x", { "Name=n", "Icon=i", "Categories=Network;WebBrowser;",
                                           "NoDisplay=TRUE", "Keywords=k", "Exec=x %U" });
        struct Model : DesktopEntries
        {
            QVariant at(int row, int role) const { return data(createIndex(row, 0), role); }
        } model;
        QCOMPARE(model.rowCount(), 1);
        const QStringList values { path,        "n",    "i",  "Network", "TRUE",
                                   "k stopped", "x %U", path, "org.x",   "n" };
        for (int i = 0; i < values.size(); ++i)
            QCOMPARE(model.at(0, DesktopEntries::PathRole + i), QVariant(values.at(i)));
        QCOMPARE(model.at(0, 267).value<const xdg::Entry *>()->path(), path);
        QCOMPARE(model.roleNames().value(259), QByteArray("appIcon"));
        QCOMPARE(model.appIdData("org.x", "Desktop Entry/Exec"), "x %U");
        QVERIFY(model.appIdData("none", "Desktop Entry/Exec").isNull());

        for (int row : { -1, 1, 2, INT_MAX })
            QVERIFY(!model.at(row, DesktopEntries::NameRole).isValid());
        // A path is contained as a whole, and listed by its beginning.
        bool contained = true;
        QStringList listed;
        QMetaObject::invokeMethod(&model, "_contains", Q_RETURN_ARG(bool, contained),
                                  Q_ARG(QString, path.chopped(1)));
        QMetaObject::invokeMethod(&model, "_getEntriesFrom", Q_RETURN_ARG(QStringList, listed),
                                  Q_ARG(QString, path.chopped(1)));
        QVERIFY(!contained);
        QCOMPARE(listed, QStringList(path));
        // The role is looked at for the row behind the last one too, and for none further on.
        Messages messages;
        for (int row : { 0, 1, 2 })
            QVERIFY(!model.at(row, 268).isValid());
        const QString warning = "default warning: Not managed role 268";
        QCOMPARE(messages.take(), QStringList({ warning, warning }));
    }

    void rowSignalsFollowTheProtocol()
    {
        for (const char *name : { "a", "d", "e" })
            _fixture->app(name, { "Categories=Web" });
        _fixture->app("c", { "Categories=web" });
        DesktopEntries model;
        QStringList log;
        const auto recorder = [&](const char *text) {
            return [&log, &model, text](const QModelIndex &, int first, int last) {
                log += QString(text).arg(first).arg(last).arg(model.rowCount());
            };
        };
        connect(&model, &DesktopEntries::rowsAboutToBeInserted, this,
                recorder("inserting %1-%2 of %3"));
        connect(&model, &DesktopEntries::rowsInserted, this, recorder("inserted %1-%2 of %3"));
        connect(&model, &DesktopEntries::rowsAboutToBeRemoved, this,
                recorder("removing %1-%2 of %3"));
        connect(&model, &DesktopEntries::rowsRemoved, this, recorder("removed %1-%2 of %3"));
        connect(&model, &DesktopEntries::categoriesChanged, this,
                [&](const QStringList &categories) { log += categories.join(','); });

        // A category is the whole text.
        const QString path = _fixture->app("b", { "Categories=\"Web;Mail;\"" });
        QTRY_COMPARE(log.join("; "), "inserting 1-1 of 5; inserted 1-1 of 5; Web,Web;Mail;,web");
        log.clear();
        QVERIFY(QFile::remove(path));
        QTRY_COMPARE(log.join("; "), "removing 1-1 of 5; removed 1-1 of 5; Web,Web;Mail;,web");
        QCOMPARE(model.categories(), QStringList({ "Web", "web" }));
    }

    void changesNameTheRoleOfTheKey()
    {
        const QStringList lines { "Name=n",       "Icon=",      "Exec=",
                                  "Categories=c", "NoDisplay=", "Comment=" };
        _fixture->app("a");
        _fixture->app("b");
        DesktopEntries model;
        for (const QString &line : lines)
            model.appIdData("b", "Desktop Entry/" + line.section('=', 0, 0));
        QStringList log;
        connect(&model, &DesktopEntries::dataChanged, this,
                [&](const QModelIndex &from, const QModelIndex &to, const QVector<int> &roles) {
                    QCOMPARE(from, to);
                    log += QStringLiteral("%1:%2/%3").arg(from.row()).arg(roles[0]).arg(roles.size());
                });
        connect(&model, &DesktopEntries::categoriesChanged, this,
                [&](const QStringList &categories) { log += categories.join(','); });
        QTest::ignoreMessage(QtWarningMsg, "XdgEntries::_dataChanged: Unknwon role  "
                                           "\"Desktop Entry/Comment\"");
        _fixture->app("b", QStringList(lines).replaceInStrings(QRegularExpression("$"), "x"));
        QTRY_COMPARE(log,
                     QStringList({ ",cx", "1:260/1", "1:263/1", "1:259/1", "1:258/1", "1:261/1" }));
    }

    void theRowsAreWalkedAsTheyStand()
    {
        _fixture->app("b", { "Name=n" });
        DesktopEntries model;
        model.appIdData("b", "Desktop Entry/Name");
        QList<int> rows;
        connect(&model, &DesktopEntries::dataChanged, this, [&](const QModelIndex &index) {
            rows += index.row();
            _fixture->app("a");
            QTRY_COMPARE(model.rowCount(), 2); // The entry has moved on.
        });
        _fixture->app("b", { "Name=changed" });
        QTRY_COMPARE(rows, QList<int>({ 0, 1 }));
    }

    void aPathThatASlotChangesStartsOneProgram()
    {
        for (const char *name : { "a", "b" })
            _fixture->app(name, { "Exec=" + _fixture->childCommand(name) });
        DesktopEntries model;
        QString path = model.index(0).data(257).toString();
        connect(&model, &DesktopEntries::dataChanged, this,
                [&] { path = model.index(1).data(257).toString(); });
        model.start(path);
        QCOMPARE(_fixture->report("a"), QStringList());
        QCOMPARE(model.index(1).data(262).toString(), QStringLiteral(" stopped"));
        model.stop(model.index(0).data(257).toString());
        QTRY_COMPARE(model.index(0).data(262).toString(), QStringLiteral(" stopped"));
    }

    void programsStartByPathAndStopByNumber()
    {
        held = true;
        // These would reach this process, its group or the whole session.
        for (const char *text : { "0", "-1", "-0", " 0 ", "-2147483648", "99999999999", "" })
            DesktopEntries().stop(text);
        DesktopEntries().stop("4711");
        held = false;
        QCOMPARE(*sent, Signals({ { 4711, SIGTERM } }));

        // Entries without a program have the number 0, and the first of them is told to stop.
        for (const char *name : { "a", "b" })
            _fixture->app(name, { "[Desktop Action Stop]", "Exec=" + _fixture->childCommand(name) });
        const QString path
                = _fixture->app("c", { "Exec=" + _fixture->childCommand("report", "%u") });
        DesktopEntries model;
        model.start(path, { "x" });
        QCOMPARE(_fixture->report("report"), QStringList("x"));
        model.stop("0");
        QCOMPARE(model.index(1).data(262), QVariant(" stopped"));
        QCOMPARE(_fixture->report("a"), QStringList());
        model.stop(path);
        QTRY_COMPARE(model.index(2).data(262), QVariant(" stopped"));
    }
};

QTEST_GUILESS_MAIN(TestDesktopEntries)
#include "tst_desktopentries.moc"
