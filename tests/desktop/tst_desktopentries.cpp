#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/entry.h>

#include "desktopfixture.h"
#include "messages.h"

#include <QtTest>

using xdg::DesktopEntries;

class TestDesktopEntries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { _fixture.reset(new DesktopFixture); }
    void cleanup() { _fixture.reset(); }

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
        QCOMPARE(model.at(0, 267).typeName(), "const xdg::Entry*");
        QCOMPARE(model.at(0, 267).value<const xdg::Entry *>()->path(), path);
        QCOMPARE(model.roleNames().value(259), QByteArray("appIcon"));
        QCOMPARE(model.appIdData("org.x", "Desktop Entry/Exec"), "x %U");
        QVERIFY(model.appIdData("none", "Desktop Entry/Exec").isNull());

        Messages messages;
        for (int row : { -1, 1, 2, INT_MAX })
            QVERIFY(!model.at(row, DesktopEntries::NameRole).isValid());
        QVERIFY(!model.at(0, 268).isValid());
        QCOMPARE(messages.take(), QStringList("default warning: Not managed role 268"));
    }

    void theLastSystemDirectoryWinsAtConstruction()
    {
        for (const char *dir : { "home", "one", "two" })
            _fixture->write(QStringLiteral("%1/applications/foo.desktop").arg(dir));
        DesktopEntries model;
        QCOMPARE(model.index(0).data(257).toString(),
                 _fixture->path("two/applications/foo.desktop"));
        // What arrives later takes over.
        _fixture->app("zed");
        QTRY_COMPARE(model.rowCount(), 2);
        QCOMPARE(model.index(0).data(257).toString(),
                 _fixture->path("home/applications/foo.desktop"));
    }

    void rowSignalsFollowTheProtocol()
    {
        QCOMPARE(DesktopEntries().categories(), QStringList());
        _fixture->app("a", { "Categories=Web" });
        _fixture->app("c", { "Categories=web" });
        _fixture->app("d");
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
        QTRY_COMPARE(log.join("; "), "inserting 1-1 of 4; inserted 1-1 of 4; Web,Web;Mail;,web,");
        log.clear();
        QVERIFY(QFile::remove(path));
        QTRY_COMPARE(log.join("; "), "removing 1-1 of 4; removed 1-1 of 4; Web,Web;Mail;,web,");
        QCOMPARE(model.categories(), QStringList({ "Web", "web", "" }));
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
        Messages messages;
        _fixture->app("b", QStringList(lines).replaceInStrings(QRegularExpression("$"), "x"));
        QTRY_COMPARE(log,
                     QStringList({ ",cx", "1:260/1", "1:263/1", "1:259/1", "1:258/1", "1:261/1" }));
        QCOMPARE(messages.take(),
                 QStringList("default warning: XdgEntries::_dataChanged: Unknwon role  "
                             "\"Desktop Entry/Comment\""));
    }

    void startAndStopByPath()
    {
        const QString path
                = _fixture->app("a", { "Exec=" + _fixture->childCommand("report", "%u") });
        DesktopEntries model;
        QSignalSpy changed(&model, &DesktopEntries::dataChanged);
        QSignalSpy raised(&model, &DesktopEntries::raiseProcess);
        model.start(path, { "x" });
        QCOMPARE(_fixture->report("report"), QStringList("x"));
        QTRY_COMPARE(changed.count(), 2);
        QCOMPARE(changed.at(0).at(2).value<QVector<int>>(), QVector<int>({ 262 }));
        const int pid = model.index(0).data(267).value<const xdg::Entry *>()->pid();
        model.start(path);
        QCOMPARE(raised, QList<QList<QVariant>>({ { pid } }));
        model.stop(path);
        QTRY_COMPARE(model.index(0).data(262).toString(), QStringLiteral(" stopped"));
    }

    void stopByNumber()
    {
        QProcess stranger;
        stranger.start(CHILD, { _fixture->path("report") });
        QCOMPARE(_fixture->report("report"), QStringList());
        // These would reach this process, its group or the whole session.
        for (const char *text : { "0", "-1", "-0", " 0 ", "-2147483648", "99999999999", "" })
            DesktopEntries().stop(text);
        QVERIFY(!stranger.waitForFinished(50));
        DesktopEntries().stop(QString::number(stranger.processId()));
        QVERIFY(stranger.waitForFinished());
        QCOMPARE(stranger.error(), QProcess::Crashed);

        // An entry without a program has the number 0, and is told to stop.
        _fixture->app("a", { "[Desktop Action Stop]", "Exec=" + _fixture->childCommand("stop") });
        DesktopEntries().stop("0");
        QCOMPARE(_fixture->report("stop"), QStringList());
    }

private:
    QScopedPointer<DesktopFixture> _fixture;
};

QTEST_GUILESS_MAIN(TestDesktopEntries)
#include "tst_desktopentries.moc"
