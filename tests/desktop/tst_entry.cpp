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
    void keywordsCarryTheStatusWord();
    void changesAreReportedByKeyInAscendingOrder();
    void aRemovedFileIsReportedAndKeepsItsValues();
    void anAppIdIsFoundInTheHomeFirst();
    void theChildReceivesItsArguments();
    void theChildHasTheEnvironmentOfTheConstruction();
    void aProgramRunsIsRaisedStopsAndRunsAgain();
    void stateChangesOfWhatCannotRun();
    void aStopActionNeedsAFreeProcess();
    void aSignalNeverGoesToProcessZero();
    void destructionKillsSilently();

private:
    QString _write(const QStringList &lines) { return _fixture->write("a.desktop", lines); }
    QString _child(const QString &arguments = {})
    {
        return "Exec=" + _fixture->childCommand("report", arguments);
    }

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
    QCOMPARE(Entry(entry).data("Desktop Entry/Keywords"), QStringLiteral(" stopped"));
}

void TestEntry::keywordsCarryTheStatusWord()
{
    const auto keywords = [this](const QString &line, const char *key = "Keywords") {
        return Entry(_write({ line })).data(QString("Desktop Entry/") + key);
    };
    QCOMPARE(keywords("Keywords=foo"), "foo stopped");
    QCOMPARE(keywords(""), " stopped");
    QCOMPARE(keywords("Keywords=aRemoteProcess1"), "aRemoteProcess1");
    QCOMPARE(keywords("keywords=foo", "keywords"), "foo");
}

void TestEntry::changesAreReportedByKeyInAscendingOrder()
{
    Entry entry(_write({ "Name=n", "Icon=i", "Exec=e", "Comment=c" }));
    QStringList changes;
    connect(&entry, &Entry::dataChanged, this, [&](const QString &key, const QString &value) {
        changes += key.section('/', 1) + '=' + value;
    });
    for (const char *name : { "Name", "Late", "Icon", "Exec", "Keywords" })
        entry.data(QString("Desktop Entry/") + name);
    _write({ "Exec=e", "Name=new", "Late=l", "Comment=changed", "Keywords=k" });
    QCOMPARE(entry.data("Desktop Entry/Name"), "n");
    QTRY_COMPARE(changes, QStringList({ "Icon=", "Late=l", "Name=new" }));
    QCOMPARE(entry.data("Desktop Entry/Name"), "new");
    changes.clear();
    _write({ "Exec=e", "Name=n", "Late=l" });
    QTRY_COMPARE(changes, QStringList("Name=n"));
}

void TestEntry::aRemovedFileIsReportedAndKeepsItsValues()
{
    Entry entry(_write({ "Name=n" }));
    QCOMPARE(entry.data("Desktop Entry/Name"), "n");
    QSignalSpy removed(&entry, &Entry::removed);
    QSignalSpy changed(&entry, &Entry::dataChanged);
    QVERIFY(QFile::remove(entry.path()));
    QVERIFY(removed.wait());
    QCOMPARE(removed, QList<QList<QVariant>>({ { entry.path() } }));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(entry.data("Desktop Entry/Name"), "n");
}

void TestEntry::anAppIdIsFoundInTheHomeFirst()
{
    Entry entry;
    QSignalSpy iconChanged(&entry, &Entry::iconChanged);
    for (const char *dir : { "two", "one", "home" }) {
        const QString path = _fixture->write(QString(dir) + "/applications/org.x.desktop",
                                             { QString("Icon=") + dir });
        entry.setAppId("org.x");
        QCOMPARE(entry.path(), path);
        QCOMPARE(entry.appId(), "org.x");
    }
    entry.setDesktopFile(entry.path());
    QCOMPARE(iconChanged, QList<QList<QVariant>>({ { "two" }, { "one" }, { "home" }, { "home" } }));

    Messages messages;
    const QString path = entry.path();
    entry.setAppId("no\"ne");
    QCOMPARE(messages.take(),
             QStringList("default warning: \"Can't find Desktop Entry for no\\\"ne\""));
    QCOMPARE(entry.path(), path);
    QCOMPARE(iconChanged.count(), 4);
}

void TestEntry::theChildReceivesItsArguments()
{
    const auto check = [this](QString lines, const QStringList &arguments) {
        Entry entry(
                _write({ "Exec=" + lines.replace("%1", _fixture->childCommand("report", "-")) }));
        entry.start({ "one file", "two" });
        QTRY_VERIFY(_fixture->has("report"));
        QCOMPARE(_fixture->reportOf("report").mid(1), arguments);
        QFile::remove(_fixture->path("report"));
    };
    check("%1 %U", {});
    check("%1 a %f b", { "a", "one file", "b" });
    check("%1 'a b' ''c", { "a b", "", "c" });
    check("\n[Desktop Action Start]\nExec=%1 %u", { "one file" });
    check("\" \"\n[Desktop Action Start]\nExec=%1 x", { "x" });
    check("%1 x\n[Desktop Action Start]\nExec=%1 y", { "x" });
}

void TestEntry::theChildHasTheEnvironmentOfTheConstruction()
{
    _fixture->environment.set("QT_IM_MODULE", "ibus");
    _fixture->environment.set("QUORVANE_TEST", "before");
    Entry first(_write({ _child() }));
    _fixture->environment.set("QUORVANE_TEST", "after");
    Entry second(_fixture->write("b.desktop", { "Exec=" + _fixture->childCommand("second") }));
    first.start({});
    second.start({});
    QTRY_VERIFY(_fixture->has("report") && _fixture->has("second"));

    const QStringList variables = _fixture->reportOf("report", "variable");
    QCOMPARE(variables.filter("QT_QPA_PLATFORM="), QStringList("QT_QPA_PLATFORM=wayland-egl"));
    QCOMPARE(variables.filter("QT_IM_MODULE="), QStringList());
    QCOMPARE(variables.filter("QUORVANE_TEST"), QStringList("QUORVANE_TEST=before"));
    QVERIFY(_fixture->reportOf("second", "variable").contains("QUORVANE_TEST=after"));
}

void TestEntry::aProgramRunsIsRaisedStopsAndRunsAgain()
{
    Entry entry(_write({ "Keywords=k", _child("%i") }));
    QSignalSpy changed(&entry, &Entry::dataChanged);
    QSignalSpy raised(&entry, &Entry::raiseProcess);
    const QString key = "Desktop Entry/Keywords";
    QList<QList<QVariant>> changes { { key, "k starting" } };
    entry.start({});
    QCOMPARE(changed, changes);
    QTRY_VERIFY(_fixture->has("report"));
    changes += QList<QVariant> { key, "k running" };
    QCOMPARE(changed, changes);
    const int pid = entry.pid();

    // The arguments are expanded, with their warning, even for a program that runs already.
    Messages messages;
    entry.start({});
    QCOMPARE(raised, QList<QList<QVariant>>({ { pid } }));
    QCOMPARE(messages.take().filter("are not supported").size(), 1);

    entry.stop({});
    QCOMPARE(changed, changes);
    changes += QList<QVariant> { key, "k stopped" };
    QTRY_COMPARE(changed, changes);
    QVERIFY(QFile::remove(_fixture->path("report")));
    entry.start({});
    QTRY_VERIFY(_fixture->has("report"));
    QVERIFY(entry.pid() > 0 && entry.pid() != pid);
    QCOMPARE(raised.count(), 1);
}

void TestEntry::stateChangesOfWhatCannotRun()
{
    const QStringList failing { " starting", " stopped" };
    const auto check = [this](const char *command, const QStringList &states, int warnings) {
        Entry entry(_write({ QString("Exec=") + command }));
        QStringList seen;
        connect(&entry, &Entry::dataChanged, this,
                [&](const QString &, const QString &value) { seen += value; });
        Messages messages;
        entry.start({});
        QTRY_COMPARE(seen, states);
        QCOMPARE(messages.take().filter("Can't find a way to start").size(), warnings);
    };
    check("/no/such/program", failing, 0);
    check("%f x", failing, 0);
    check("''", {}, 0);
    check("", {}, 1);
    check("\" \\t \"", {}, 1);
}

void TestEntry::aStopActionNeedsAFreeProcess()
{
    const QString stop = "[Desktop Action Stop]\nExec=" + _fixture->childCommand("stop", "%f");
    Entry running(_write({ _child(), stop }));
    running.start({});
    QTRY_VERIFY(_fixture->has("report"));
    Messages messages;
    running.stop({});
    QCOMPARE(messages.take(),
             QStringList("default warning: QProcess::start: Process is already running"));
    QCOMPARE(kill(running.pid(), 0), 0);

    Entry ended(_fixture->write("b.desktop", { stop }));
    ended.stop({ "x" });
    QTRY_VERIFY(_fixture->has("stop"));
    QCOMPARE(_fixture->reportOf("stop"), QStringList("x"));
    QCOMPARE(ended.data("Desktop Entry/Keywords"), " running");
}

void TestEntry::aSignalNeverGoesToProcessZero()
{
    Entry entry(_write({ _child() }));
    connect(&entry, &Entry::dataChanged, this, [&](const QString &, const QString &value) {
        // The child has no number yet; 0 would be this process and all of its group.
        if (value == QLatin1String(" starting"))
            entry.stop({});
    });
    entry.start({});
    QTRY_VERIFY(_fixture->has("report"));
}

void TestEntry::destructionKillsSilently()
{
    int heard = 0;
    int pid = 0;
    {
        Entry entry(_write({ _child() }));
        entry.start({});
        QTRY_VERIFY(_fixture->has("report"));
        pid = entry.pid();
        connect(&entry, &Entry::dataChanged, this, [&] { ++heard; });
    }
    QCOMPARE(heard, 0);
    QCOMPARE(kill(pid, 0), -1);
}

QTEST_GUILESS_MAIN(TestEntry)
#include "tst_entry.moc"
