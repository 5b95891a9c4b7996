#include <quorvane/desktop/entry.h>

#include "desktopfixture.h"
#include "messages.h"

#include <QtTest>

#include <signal.h>

using xdg::Entry;

class TestEntry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { _fixture.reset(new DesktopFixture); }
    void cleanup() { _fixture.reset(); }

    void withoutAFileEveryValueIsNull();
    void keywordsCarryTheStatusWord_data();
    void keywordsCarryTheStatusWord();
    void changesAreReportedByKeyInAscendingOrder();
    void aRemovedFileIsReportedAndKeepsItsValues();
    void anAppIdIsFoundInTheHomeFirst();
    void anUnknownAppIdChangesNothing();
    void theChildReceivesItsArguments_data();
    void theChildReceivesItsArguments();
    void theChildHasTheEnvironmentOfTheConstruction();
    void aProgramRunsIsRaisedStopsAndRunsAgain();
    void stateChangesOfWhatCannotRun_data();
    void stateChangesOfWhatCannotRun();
    void aStopActionNeedsAFreeProcess();
    void aSignalNeverGoesToProcessZero();
    void destructionKillsSilently();

private:
    QScopedPointer<DesktopFixture> _fixture;
};

void TestEntry::withoutAFileEveryValueIsNull()
{
    Entry entry;
    QVERIFY(entry.path().isNull());
    QVERIFY(entry.data("Desktop Entry/Name").isNull());
    QVERIFY(entry.data("Desktop Entry/Keywords").isNull());
    QMetaObject::invokeMethod(&entry, "_desktopFileChanged", Q_ARG(QString, "/x"));
    Messages messages;
    entry.stop({});
    entry.start({});
    QCOMPARE(messages.take(), QStringList("default warning: Can't find a way to start  \"\""));

    Entry copy(entry);
    QVERIFY(!copy.data("Desktop Entry/Name").size());
    QCOMPARE(copy.data("Desktop Entry/Keywords"), QStringLiteral(" stopped"));
}

void TestEntry::keywordsCarryTheStatusWord_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");

    const QString keywords = "Desktop Entry/Keywords";
    QTest::newRow("text") << "Keywords=foo" << keywords << "foo stopped";
    QTest::newRow("no text") << "" << keywords << " stopped";
    QTest::newRow("remote") << "Keywords=aRemoteProcess1" << keywords << "aRemoteProcess1";
    QTest::newRow("case of the text")
            << "Keywords=remoteprocess" << keywords << "remoteprocess stopped";
    QTest::newRow("case of the key") << "keywords=foo"
                                     << "Desktop Entry/keywords"
                                     << "foo";
}

void TestEntry::keywordsCarryTheStatusWord()
{
    QFETCH(QString, line);
    QFETCH(QString, key);
    Entry entry(_fixture->write("a.desktop", { line }));
    QTEST(entry.data(key), "value");
}

void TestEntry::changesAreReportedByKeyInAscendingOrder()
{
    Entry entry(_fixture->write("a.desktop", { "Name=n", "Icon=i", "Exec=e", "Comment=c" }));
    QStringList changes;
    connect(&entry, &Entry::dataChanged, this, [&](const QString &key, const QString &value) {
        changes += key.section('/', 1) + '=' + value;
    });
    QSignalSpy iconChanged(&entry, &Entry::iconChanged);
    for (const char *name : { "Name", "Late", "Icon", "Exec", "Keywords" })
        entry.data(QStringLiteral("Desktop Entry/") + name);
    _fixture->write("a.desktop",
                    { "Exec=e", "Name=new", "Late=l", "Comment=changed", "Keywords=k" });
    QCOMPARE(entry.data("Desktop Entry/Name"), QStringLiteral("n"));
    QTRY_COMPARE(changes, QStringList({ "Icon=", "Late=l", "Name=new" }));
    QCOMPARE(iconChanged.count(), 0);
    QCOMPARE(entry.data("Desktop Entry/Name"), QStringLiteral("new"));
    changes.clear();
    _fixture->write("a.desktop", { "Exec=e", "Name=n", "Late=l" });
    QTRY_COMPARE(changes, QStringList("Name=n"));
}

void TestEntry::aRemovedFileIsReportedAndKeepsItsValues()
{
    const QString path = _fixture->write("a.desktop", { "Name=n" });
    Entry entry(path);
    QCOMPARE(entry.data("Desktop Entry/Name"), QStringLiteral("n"));
    QSignalSpy removed(&entry, &Entry::removed);
    QSignalSpy changed(&entry, &Entry::dataChanged);
    QVERIFY(QFile::remove(path));
    QVERIFY(removed.wait());
    QCOMPARE(removed.value(0).value(0).toString(), path);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(entry.data("Desktop Entry/Name"), QStringLiteral("n"));
}

void TestEntry::anAppIdIsFoundInTheHomeFirst()
{
    const QString two = _fixture->write("two/applications/org.x.desktop", { "Icon=2" });
    Entry entry;
    QSignalSpy iconChanged(&entry, &Entry::iconChanged);
    QSignalSpy appIdChanged(&entry, &Entry::appIdChanged);
    QSignalSpy desktopFileChanged(&entry, &Entry::desktopFileChanged);
    entry.setAppId("org.x");
    QCOMPARE(entry.path(), two);
    QCOMPARE(entry.appId(), QStringLiteral("org.x"));
    const QString one = _fixture->write("one/applications/org.x.desktop", { "Icon=1" });
    entry.setAppId("org.x");
    QCOMPARE(entry.path(), one);
    // Whatever has the name counts as found, a folder too.
    QVERIFY(QDir().mkpath(_fixture->path("home/applications/org.x.desktop")));
    entry.setAppId("org.x");
    QCOMPARE(entry.path(), _fixture->path("home/applications/org.x.desktop"));
    entry.setDesktopFile(one);
    entry.setDesktopFile(one);
    QCOMPARE(iconChanged, QList<QList<QVariant>>({ { "2" }, { "1" }, { "" }, { "1" }, { "1" } }));
    QCOMPARE(appIdChanged.count() + desktopFileChanged.count(), 0);
}

void TestEntry::anUnknownAppIdChangesNothing()
{
    const QString path = _fixture->write("a.desktop");
    Entry entry(path);
    QSignalSpy iconChanged(&entry, &Entry::iconChanged);
    Messages messages;
    entry.setAppId("no\"ne");
    QCOMPARE(messages.take(),
             QStringList("default warning: \"Can't find Desktop Entry for no\\\"ne\""));
    QCOMPARE(entry.path(), path);
    QCOMPARE(iconChanged.count(), 0);
}

void TestEntry::theChildReceivesItsArguments_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("%U") << "Exec=%1 %U" << QStringList();
    QTest::newRow("%f") << "Exec=%1 a %f b" << QStringList({ "a", "one file", "b" });
    QTest::newRow("within a word") << "Exec=%1 --name=%f" << QStringList("--name=%f");
    QTest::newRow("quotes") << "Exec=%1 'a b' ''c" << QStringList({ "a b", "", "c" });
    QTest::newRow("start action") << "[Desktop Action Start]\nExec=%1 %u"
                                  << QStringList("one file");
    QTest::newRow("blank command")
            << "Exec=\" \"\n[Desktop Action Start]\nExec=%1 x" << QStringList("x");
    QTest::newRow("command before action")
            << "Exec=%1 x\n[Desktop Action Start]\nExec=%1 y" << QStringList("x");
}

void TestEntry::theChildReceivesItsArguments()
{
    QFETCH(QString, line);
    Entry entry(_fixture->write("a.desktop",
                                { line.replace("%1", _fixture->childCommand("report", "-")) }));
    entry.start({ "one file", "two" });
    QTRY_VERIFY(QFile::exists(_fixture->path("report")));
    QTEST(QStringList(_fixture->reportOf("report").mid(1)), "arguments");
}

void TestEntry::theChildHasTheEnvironmentOfTheConstruction()
{
    _fixture->environment.set("QT_IM_MODULE", "ibus");
    _fixture->environment.set("QUORVANE_TEST", "before");
    Entry first(_fixture->write("a.desktop", { "Exec=" + _fixture->childCommand("first") }));
    _fixture->environment.set("QUORVANE_TEST", "after");
    Entry second(_fixture->write("b.desktop", { "Exec=" + _fixture->childCommand("second") }));
    first.start({});
    second.start({});
    QTRY_VERIFY(QFile::exists(_fixture->path("first")));
    QTRY_VERIFY(QFile::exists(_fixture->path("second")));

    const QStringList variables = _fixture->reportOf("first", "variable");
    QCOMPARE(variables.filter("QT_QPA_PLATFORM="), QStringList("QT_QPA_PLATFORM=wayland-egl"));
    QCOMPARE(variables.filter("QT_IM_MODULE="), QStringList());
    QCOMPARE(variables.filter("QUORVANE_TEST"), QStringList("QUORVANE_TEST=before"));
    QCOMPARE(_fixture->reportOf("second", "variable").filter("QUORVANE_TEST"),
             QStringList("QUORVANE_TEST=after"));
}

void TestEntry::aProgramRunsIsRaisedStopsAndRunsAgain()
{
    Entry entry(_fixture->write(
            "a.desktop", { "Keywords=k", "Exec=" + _fixture->childCommand("report", "%i") }));
    QStringList states;
    connect(&entry, &Entry::dataChanged, this, [&](const QString &key, const QString &value) {
        QCOMPARE(key, QStringLiteral("Desktop Entry/Keywords"));
        states += value;
    });
    QSignalSpy raised(&entry, &Entry::raiseProcess);
    QCOMPARE(entry.pid(), 0);

    entry.start({});
    QCOMPARE(states.value(0), QStringLiteral("k starting"));
    QTRY_VERIFY(QFile::exists(_fixture->path("report")));
    QCOMPARE(states, QStringList({ "k starting", "k running" }));
    const int pid = entry.pid();
    QVERIFY(pid > 0);

    // The arguments are expanded, with their warning, even for a program that runs already.
    Messages messages;
    entry.start({});
    QCOMPARE(raised, QList<QList<QVariant>>({ { pid } }));
    QCOMPARE(entry.pid(), pid);
    QCOMPARE(messages.take().filter("are not supported").size(), 1);

    entry.stop({});
    QCOMPARE(states.size(), 2);
    QTRY_COMPARE(states.value(2), QStringLiteral("k stopped"));
    QVERIFY(QFile::remove(_fixture->path("report")));
    entry.start({});
    QTRY_VERIFY(QFile::exists(_fixture->path("report")));
    QVERIFY(entry.pid() > 0 && entry.pid() != pid);
    QCOMPARE(raised.count(), 1);
}

void TestEntry::stateChangesOfWhatCannotRun_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("states");
    QTest::addColumn<int>("warnings");

    const QStringList failing { " starting", " stopped" };
    QTest::newRow("missing program") << "/no/such/program" << failing << 0;
    QTest::newRow("a folder") << "/" << failing << 0;
    QTest::newRow("a code in the place of the program") << "%f x" << failing << 0;
    QTest::newRow("an empty program") << "''" << QStringList() << 0;
    QTest::newRow("no command") << "" << QStringList() << 1;
    QTest::newRow("white space") << "\" \\t \"" << QStringList() << 1;
}

void TestEntry::stateChangesOfWhatCannotRun()
{
    QFETCH(QString, command);
    QFETCH(QStringList, states);
    QFETCH(int, warnings);
    Entry entry(_fixture->write("a.desktop", { "Exec=" + command }));
    QStringList seen;
    connect(&entry, &Entry::dataChanged, this,
            [&](const QString &, const QString &value) { seen += value; });
    Messages messages;
    entry.start({});
    QTRY_COMPARE(seen, states);
    QCOMPARE(messages.take().filter("Can't find a way to start").size(), warnings);
}

void TestEntry::aStopActionNeedsAFreeProcess()
{
    const QString stop = _fixture->childCommand("stop", "%f");
    Entry running(_fixture->write("a.desktop", { "Exec=" + _fixture->childCommand("start"),
                                                 "[Desktop Action Stop]", "Exec=" + stop }));
    running.start({});
    QTRY_VERIFY(QFile::exists(_fixture->path("start")));
    const int pid = running.pid();
    Messages messages;
    running.stop({});
    QCOMPARE(messages.take(),
             QStringList("default warning: QProcess::start: Process is already running"));
    QCOMPARE(kill(pid, 0), 0);

    Entry ended(_fixture->write("b.desktop", { "[Desktop Action Stop]", "Exec=" + stop }));
    ended.stop({ "x" });
    QTRY_VERIFY(QFile::exists(_fixture->path("stop")));
    QCOMPARE(_fixture->reportOf("stop"), QStringList("x"));
    QCOMPARE(ended.data("Desktop Entry/Keywords"), QStringLiteral(" running"));
}

void TestEntry::aSignalNeverGoesToProcessZero()
{
    Entry entry(_fixture->write("a.desktop", { "Exec=" + _fixture->childCommand("report") }));
    connect(&entry, &Entry::dataChanged, this, [&](const QString &, const QString &value) {
        // The child has no number yet; 0 would be this process and all of its group.
        if (value == QLatin1String(" starting"))
            entry.stop({});
    });
    entry.start({});
    QTRY_VERIFY(QFile::exists(_fixture->path("report")));
}

void TestEntry::destructionKillsSilently()
{
    int heard = 0;
    int pid = 0;
    {
        Entry entry(_fixture->write("a.desktop", { "Exec=" + _fixture->childCommand("report") }));
        entry.start({});
        QTRY_VERIFY(QFile::exists(_fixture->path("report")));
        pid = entry.pid();
        connect(&entry, &Entry::dataChanged, this, [&] {
            ++heard;
            entry.data("Desktop Entry/Name");
        });
    }
    QCOMPARE(heard, 0);
    QCOMPARE(kill(pid, 0), -1);
}

QTEST_GUILESS_MAIN(TestEntry)
#include "tst_entry.moc"
