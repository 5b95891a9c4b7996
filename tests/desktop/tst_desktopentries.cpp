#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/entry.h>

#include "desktopfixture.h"
#include "messages.h"

#include <QtTest>

#include <signal.h>

using xdg::DesktopEntries;

class TestDesktopEntries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { _fixture.reset(new DesktopFixture); }
    void cleanup() { _fixture.reset(); }

    void rolesGiveTheValuesOfTheFile();
    void lookupsOutOfRangeEndQuietly();
    void theLastSystemDirectoryWinsAtConstruction();
    void rowSignalsFollowTheProtocol();
    void categoriesAreWholeTexts();
    void changesNameTheRoleOfTheKey();
    void startAndStopByPath();
    void stopByNumber();
    void entriesOfAPrefix();

private:
    QString _app(const QString &name, const QStringList &lines = {}) const
    {
        return _fixture->write("home/applications/" + name + ".desktop", lines);
    }

    QScopedPointer<DesktopFixture> _fixture;
};

void TestDesktopEntries::rolesGiveTheValuesOfTheFile()
{
    const QString path = _app("org.x", { "Name=n", "Icon=i", "Categories=Network;WebBrowser;",
                                         "NoDisplay=TRUE", "Keywords=k", "Exec=x %U" });
    DesktopEntries model;
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.rowCount(model.index(0)), 1);
    const QStringList values { path,        "n",    "i",  "Network", "TRUE",
                               "k stopped", "x %U", path, "org.x",   "n" };
    for (int i = 0; i < values.size(); ++i)
        QCOMPARE(model.index(0).data(DesktopEntries::PathRole + i), QVariant(values.at(i)));
    QCOMPARE(model.index(0).data(), QVariant("n"));
    const QVariant entry = model.index(0).data(267);
    QCOMPARE(entry.typeName(), "const xdg::Entry*");
    QCOMPARE(entry.value<const xdg::Entry *>()->path(), path);
    QCOMPARE(model.roleNames().value(259), QByteArray("appIcon"));
    QCOMPARE(model.roleNames().value(Qt::DecorationRole), QByteArray("decoration"));
    QCOMPARE(model.appIdData("org.x", "Desktop Entry/Exec"), QStringLiteral("x %U"));
    QVERIFY(model.appIdData("none", "Desktop Entry/Exec").isNull());
}

void TestDesktopEntries::lookupsOutOfRangeEndQuietly()
{
    _app("a");
    struct Model : DesktopEntries
    {
        QModelIndex at(int row) const { return createIndex(row, 0); }
    } model;
    Messages messages;
    for (int row : { -1, 1, 2, INT_MAX })
        QVERIFY(!model.data(model.at(row), DesktopEntries::NameRole).isValid());
    QVERIFY(!model.data(QModelIndex(), DesktopEntries::EntryRole).isValid());
    QCOMPARE(messages.take(), QStringList());
    QVERIFY(!model.data(model.at(0), 268).isValid());
    QCOMPARE(messages.take(), QStringList("default warning: Not managed role 268"));
    model.start("/none");
    model.start("a");
    model.stop("/none");
    QCOMPARE(messages.take(), QStringList());
}

void TestDesktopEntries::theLastSystemDirectoryWinsAtConstruction()
{
    for (const char *dir : { "home", "one", "two" })
        _fixture->write(QStringLiteral("%1/applications/foo.desktop").arg(dir));
    for (const char *dir : { "home", "one" })
        _fixture->write(QStringLiteral("%1/applications/bar.desktop").arg(dir));
    DesktopEntries model;
    QCOMPARE(model.index(0).data(257).toString(), _fixture->path("one/applications/bar.desktop"));
    QCOMPARE(model.index(1).data(257).toString(), _fixture->path("two/applications/foo.desktop"));
    // What arrives later takes over.
    _app("zed");
    QTRY_COMPARE(model.rowCount(), 3);
    QCOMPARE(model.index(1).data(257).toString(), _fixture->path("home/applications/foo.desktop"));
}

void TestDesktopEntries::rowSignalsFollowTheProtocol()
{
    _app("a", { "Categories=A" });
    DesktopEntries model;
    QStringList log;
    const auto recorder = [&](const char *name) {
        return [&log, &model, name](const QModelIndex &, int first, int last) {
            log += QStringLiteral("%1 %2-%3 of %4")
                           .arg(name)
                           .arg(first)
                           .arg(last)
                           .arg(model.rowCount());
        };
    };
    connect(&model, &DesktopEntries::rowsAboutToBeInserted, this, recorder("inserting"));
    connect(&model, &DesktopEntries::rowsInserted, this, recorder("inserted"));
    connect(&model, &DesktopEntries::rowsAboutToBeRemoved, this, recorder("removing"));
    connect(&model, &DesktopEntries::rowsRemoved, this, recorder("removed"));
    connect(&model, &DesktopEntries::categoriesChanged, this,
            [&](const QStringList &categories) { log += categories.join(','); });

    const QString path = _app("b", { "Categories=B" });
    QTRY_COMPARE(log, QStringList({ "inserting 1-1 of 2", "inserted 1-1 of 2", "A,B" }));
    log.clear();
    QVERIFY(QFile::remove(path));
    QTRY_COMPARE(log, QStringList({ "removing 1-1 of 2", "removed 1-1 of 2", "A,B" }));
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.categories(), QStringList("A"));
}

void TestDesktopEntries::categoriesAreWholeTexts()
{
    QCOMPARE(DesktopEntries().categories(), QStringList());
    _app("a", { "Categories=Office" });
    _app("b", { "Categories=\"Network;Web;\"" });
    _app("c");
    _app("d", { "Categories=office" });
    _app("e", { "Categories=Office" });
    QCOMPARE(DesktopEntries().categories(), QStringList({ "Office", "Network;Web;", "", "office" }));
}

void TestDesktopEntries::changesNameTheRoleOfTheKey()
{
    _app("a");
    _app("b", { "Name=n", "Icon=i", "Exec=e", "Categories=c", "NoDisplay=d", "Comment=x" });
    DesktopEntries model;
    for (const char *key : { "Name", "Icon", "Exec", "Categories", "NoDisplay", "Comment" })
        model.appIdData("b", QStringLiteral("Desktop Entry/") + key);
    QStringList log;
    connect(&model, &DesktopEntries::dataChanged, this,
            [&](const QModelIndex &from, const QModelIndex &to, const QVector<int> &roles) {
                QCOMPARE(from, to);
                QCOMPARE(roles.size(), 1);
                log += QStringLiteral("%1:%2").arg(from.row()).arg(roles.at(0));
            });
    connect(&model, &DesktopEntries::categoriesChanged, this,
            [&](const QStringList &categories) { log += categories.join(','); });
    Messages messages;
    _app("b", { "Name=nn", "Icon=ii", "Exec=ee", "Categories=cc", "NoDisplay=dd", "Comment=xx" });
    QTRY_COMPARE(log, QStringList({ ",cc", "1:260", "1:263", "1:259", "1:258", "1:261" }));
    QCOMPARE(messages.take(),
             QStringList("default warning: XdgEntries::_dataChanged: Unknwon role  "
                         "\"Desktop Entry/Comment\""));
}

void TestDesktopEntries::startAndStopByPath()
{
    const QString path = _app("a", { "Exec=" + _fixture->childCommand("report", "%u") });
    DesktopEntries model;
    QSignalSpy changed(&model, &DesktopEntries::dataChanged);
    QSignalSpy raised(&model, &DesktopEntries::raiseProcess);
    model.start(path, { "x" });
    QTRY_VERIFY(QFile::exists(_fixture->path("report")));
    QCOMPARE(_fixture->reportOf("report"), QStringList("x"));
    QCOMPARE(changed.value(0).value(2).value<QVector<int>>(), QVector<int>({ 262 }));
    const int pid = model.index(0).data(267).value<const xdg::Entry *>()->pid();
    model.start(path);
    QCOMPARE(raised, QList<QList<QVariant>>({ { pid } }));
    model.stop(path);
    QTRY_COMPARE(model.index(0).data(262).toString(), QStringLiteral(" stopped"));

    QVERIFY(QFile::remove(_fixture->path("report")));
    model.start(path);
    QTRY_VERIFY(QFile::exists(_fixture->path("report")));
    const auto *entry = model.index(0).data(267).value<const xdg::Entry *>();
    model.stop(QString::number(entry->pid()));
    QTRY_COMPARE(entry->pid(), 0);
}

void TestDesktopEntries::stopByNumber()
{
    DesktopEntries model;
    QProcess stranger;
    stranger.start(CHILD, { _fixture->path("report") });
    QTRY_VERIFY(QFile::exists(_fixture->path("report")));
    // These would reach this process, its group or the whole session.
    for (const char *text : { "0", "-1", "-0", " 0 ", "-2147483648", "99999999999", "" })
        model.stop(text);
    QVERIFY(!stranger.waitForFinished(50));
    model.stop(QString::number(stranger.processId()));
    QVERIFY(stranger.waitForFinished());
    QCOMPARE(stranger.error(), QProcess::Crashed);

    // An entry without a program has the number 0, and is told to stop.
    _app("a", { "[Desktop Action Stop]", "Exec=" + _fixture->childCommand("stop") });
    DesktopEntries withEntry;
    withEntry.stop("0");
    QTRY_VERIFY(QFile::exists(_fixture->path("stop")));
}

void TestDesktopEntries::entriesOfAPrefix()
{
    const QString home = _app("b");
    const QString one = _fixture->write("one/applications/a.desktop");
    const QString twin = _fixture->write("one-more/c.desktop");
    DesktopEntries model;
    const auto from = [&](const QString &prefix) {
        QStringList paths;
        QMetaObject::invokeMethod(&model, "_getEntriesFrom", Q_RETURN_ARG(QStringList, paths),
                                  Q_ARG(QString, prefix));
        return paths;
    };
    QCOMPARE(from(_fixture->path("on")), QStringList(one));
    QCOMPARE(from(QString()), QStringList({ one, home }));
    bool contained = true;
    QMetaObject::invokeMethod(&model, "_contains", Q_RETURN_ARG(bool, contained),
                              Q_ARG(QString, twin));
    QVERIFY(!contained);
    QMetaObject::invokeMethod(&model, "_contains", Q_RETURN_ARG(bool, contained),
                              Q_ARG(QString, home));
    QVERIFY(contained);
}

QTEST_GUILESS_MAIN(TestDesktopEntries)
#include "tst_desktopentries.moc"
