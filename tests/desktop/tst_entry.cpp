#include <quorvane/desktop/entry.h>

#include "desktopfixture.h"
#include "messages.h"

#include <signal.h>

using xdg::Entry;

// A static object of this type outlives what the entries of a thread share.
struct AtExit
{
    ~AtExit() { Entry().start({}); }
};

class TestEntry : public QObject
{
    Q_OBJECT

    QString _write(const QStringList &lines) { return _fixture->write("a.desktop", lines); }
    QString _child(const QString &args = {}) { return _fixture->childCommand("report", args); }
    void _record(Entry &entry)
    {
        _changes.clear();
        connect(&entry, &Entry::dataChanged, this, [this](const QString &key, const QString &value) {
            _changes += key.section('/', 1) + '=' + value;
        });
    }

    QScopedPointer<DesktopFixture> _fixture;
    QStringList _changes;

private Q_SLOTS:
    void init() { _fixture.reset(new DesktopFixture); }

    void withoutAFileEveryValueIsNull()
    {
        static const AtExit atExit;
        const QString key = "Desktop Entry/Keywords";
        Entry entry;
        QVERIFY(entry.path().isNull() && entry.data(key).isNull() && entry.icon().isNull());
        QSignalSpy removed(&entry, &Entry::removed);
        QMetaObject::invokeMethod(&entry, "_desktopFileChanged", Q_ARG(QString, "/x"));
        QCOMPARE(removed.count(), 0);
        Messages messages;
        entry.start({});
        QCOMPARE(messages.take(), QStringList("default warning: Can't find a way to start  \"\""));
        const Entry other(_write({ "Keywords=aRemoteProcess1" }));
        QCOMPARE(Entry(other).path(), other.path());
        QCOMPARE(Entry(other).data(key), "aRemoteProcess1");
    }

    void changesAndRemovalOfTheFileAreReported()
    {
        Entry entry;
        entry.setDesktopFile(_write({ "Name=n", "Icon=i", "Exec=e", "Comment=c" }));
        _record(entry);
        for (const char *name : { "Name", "Late", "Icon", "Exec", "Keywords" })
            entry.data(QString("Desktop Entry/") + name);
        _write({ "Exec=e", "Name=new", "Late=l", "Comment=changed", "Keywords=k" });
        QCOMPARE(entry.data("Desktop Entry/Name"), "n");
        const Entry other(entry.path()); // Has the file read anew, for both.
        QCOMPARE(entry.data("Desktop Entry/Name"), "new");
        QTRY_COMPARE(_changes, QStringList({ "Icon=", "Late=l", "Name=new" }));
        _write({ "Exec=e", "Name=n", "Late=l" });
        QTRY_COMPARE(_changes.mid(3), QStringList("Name=n"));

        QSignalSpy removed(&entry, &Entry::removed);
        QVERIFY(QFile::remove(entry.path()));
        QTRY_COMPARE(removed, QList<QList<QVariant>>({ { entry.path() } }));
        QCOMPARE(entry.data("Desktop Entry/Name"), "n");
    }

    void anAppIdIsFoundInTheHomeFirst()
    {
        Entry entry;
        QSignalSpy iconChanged(&entry, &Entry::iconChanged);
        for (const QString &dir : { QString("two"), QString("one"), QString("home") }) {
            const QString path
                    = _fixture->write(dir + "/applications/org.x.desktop", { "Icon=" + dir });
            entry.setAppId("org.x");
            QCOMPARE(entry.path(), path);
        }
        Messages messages;
        entry.setAppId("no\"ne");
        QCOMPARE(messages.take(),
                 QStringList("default warning: \"Can't find Desktop Entry for no\\\"ne\""));
        QCOMPARE(entry.appId(), "org.x");
        QCOMPARE(iconChanged, QList<QList<QVariant>>({ { "two" }, { "one" }, { "home" } }));
    }

    void theChildReceivesItsArguments()
    {
        const auto check
                = [this](QString lines, const QStringList &arguments, const char *slot = "start") {
                      Entry entry(_write({ lines.replace("CHILD", _child()) }));
                      const QStringList files { "one file", "two" };
                      QMetaObject::invokeMethod(&entry, slot, Q_ARG(QStringList, files));
                      QCOMPARE(_fixture->report("report"), arguments);
                  };
        check("Exec=CHILD 'a b' %f ''c", { "a b", "one file", "", "c" });
        check("[Desktop Action Start]\nExec=CHILD %u", { "one file" });
        check("Exec=\" \"\n[Desktop Action Start]\nExec=CHILD x", { "x" });
        check("Exec=CHILD x\n[Desktop Action Start]\nExec=CHILD y", { "x" });
        check("[Desktop Action Stop]\nExec=CHILD %f", { "one file" }, "stop");
    }

    void theChildHasTheEnvironmentOfTheConstruction()
    {
        qputenv("QT_IM_MODULE", "ibus");
        qputenv("QUORVANE_TEST", "before");
        Entry first(_write({ "Exec=" + _child() }));
        qputenv("QUORVANE_TEST", "after");
        Entry second(_write({ "Exec=" + _child() }));
        first.start({});
        const QStringList variables = _fixture->report("report", "variable");
        QVERIFY(variables.contains("QT_QPA_PLATFORM=wayland-egl"));
        QVERIFY(variables.contains("QUORVANE_TEST=before"));
        QCOMPARE(variables.filter("QT_IM_MODULE="), QStringList());
        second.start({});
        QVERIFY(_fixture->report("report", "variable").contains("QUORVANE_TEST=after"));
    }

    void aProgramRunsIsRaisedStopsAndRunsAgain()
    {
        QScopedPointer<Entry> entry(new Entry(_write({ "Keywords=k", "Exec=" + _child("%i") })));
        _record(*entry);
        // The child has no number yet; 0 would be this process and all of its group.
        connect(entry.data(), &Entry::dataChanged, this, [&](const QString &, const QString &value) {
            if (value == "k starting") {
                entry->stop({});
                entry->start({});
            }
        });
        QSignalSpy raised(entry.data(), &Entry::raiseProcess);
        entry->start({});
        QCOMPARE(_changes, QStringList("Keywords=k starting"));
        QCOMPARE(_fixture->report("report"), QStringList());
        QTRY_COMPARE(_changes.mid(1), QStringList("Keywords=k running"));

        // The arguments are expanded, with their warning, even for a program that runs already.
        Messages messages;
        const int pid = entry->pid();
        entry->start({});
        QCOMPARE(raised, QList<QList<QVariant>>({ { pid } }));
        QCOMPARE(messages.take().filter("are not supported").size(), 1);

        entry->stop({});
        QTRY_COMPARE(_changes.mid(2), QStringList("Keywords=k stopped"));
        entry->start({});
        QCOMPARE(_fixture->report("report"), QStringList());
        QTRY_COMPARE(_changes.mid(3), QStringList({ "Keywords=k starting", "Keywords=k running" }));
        const int again = entry->pid();

        // Destruction kills, and says nothing.
        entry.reset();
        QCOMPARE(kill(again, 0), -1);
        QCOMPARE(_changes.size(), 5);
    }

    void aStopActionNeedsAFreeProcess()
    {
        Entry entry(_write({ "Exec=" + _child(), "[Desktop Action Stop]", "Exec=x" }));
        entry.start({});
        QCOMPARE(_fixture->report("report"), QStringList());
        QTest::ignoreMessage(QtWarningMsg, "QProcess::start: Process is already running");
        entry.stop({});
        QCOMPARE(kill(entry.pid(), 0), 0);
    }

    void whatCannotRunIsStoppedOrNeverStarts()
    {
        const auto check = [this](const QString &command, const QString &states, int warnings) {
            Entry entry(_write({ "Exec=" + command }));
            _record(entry);
            Messages messages;
            entry.start({});
            QTRY_COMPARE(_changes.join(','), states);
            QCOMPARE(messages.take().filter("Can't find a way to start").size(), warnings);
        };
        check("%f x", "Keywords= starting,Keywords= stopped", 0);
        check("''", "", 0);
        check("\" \\t \"", "", 1);
    }
};

QTEST_GUILESS_MAIN(TestEntry)
#include "tst_entry.moc"
