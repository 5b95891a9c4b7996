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

    void withoutAFileEveryValueIsNull()
    {
        const QString key = "Desktop Entry/Keywords";
        Entry entry;
        QVERIFY(entry.path().isNull() && entry.data(key).isNull() && entry.icon().isNull());
        QMetaObject::invokeMethod(&entry, "_desktopFileChanged", Q_ARG(QString, "/x"));
        Messages messages;
        entry.stop({});
        entry.start({});
        QCOMPARE(messages.take(), QStringList("default warning: Can't find a way to start  \"\""));
        QCOMPARE(Entry(entry).data(key), " stopped");
        QCOMPARE(Entry(_write({ "Keywords=aRemoteProcess1" })).data(key), "aRemoteProcess1");
    }

    void changesAndRemovalOfTheFileAreReported()
    {
        Entry entry(_write({ "Name=n", "Icon=i", "Exec=e", "Comment=c" }));
        QStringList changes;
        _record(&entry, &changes);
        for (const char *name : { "Name", "Late", "Icon", "Exec", "Keywords" })
            entry.data(QString("Desktop Entry/") + name);
        _write({ "Exec=e", "Name=new", "Late=l", "Comment=changed", "Keywords=k" });
        QCOMPARE(entry.data("Desktop Entry/Name"), "n");
        QTRY_COMPARE(changes, QStringList({ "Icon=", "Late=l", "Name=new" }));
        QCOMPARE(entry.data("Desktop Entry/Name"), "new");
        _write({ "Exec=e", "Name=n", "Late=l" });
        QTRY_COMPARE(changes.mid(3), QStringList("Name=n"));

        QSignalSpy removed(&entry, &Entry::removed);
        QVERIFY(QFile::remove(entry.path()));
        QTRY_COMPARE(removed, QList<QList<QVariant>>({ { entry.path() } }));
        QCOMPARE(changes.size(), 4);
        QCOMPARE(entry.data("Desktop Entry/Name"), "n");
    }

    void anAppIdIsFoundInTheHomeFirst()
    {
        Entry entry;
        QSignalSpy iconChanged(&entry, &Entry::iconChanged);
        for (const char *name : { "two", "one", "home" }) {
            const QString dir = name;
            const QString path
                    = _fixture->write(dir + "/applications/org.x.desktop", { "Icon=" + dir });
            entry.setAppId("org.x");
            QCOMPARE(entry.path(), path);
            QCOMPARE(entry.appId(), "org.x");
        }
        entry.setDesktopFile(entry.path());

        Messages messages;
        entry.setAppId("no\"ne");
        QCOMPARE(messages.take(),
                 QStringList("default warning: \"Can't find Desktop Entry for no\\\"ne\""));
        QCOMPARE(entry.appId(), "org.x");
        QCOMPARE(iconChanged,
                 QList<QList<QVariant>>({ { "two" }, { "one" }, { "home" }, { "home" } }));
    }

    void theChildReceivesItsArguments()
    {
        const auto check = [this](QString lines, const QStringList &arguments) {
            Entry entry(_write({ "Exec=" + lines.replace("CHILD", _child()) }));
            entry.start({ "one file", "two" });
            QCOMPARE(_fixture->report("report"), arguments);
        };
        check("CHILD %U", {});
        check("CHILD 'a b' %f ''c", { "a b", "one file", "", "c" });
        check("\n[Desktop Action Start]\nExec=CHILD %u", { "one file" });
        check("\" \"\n[Desktop Action Start]\nExec=CHILD x", { "x" });
        check("CHILD x\n[Desktop Action Start]\nExec=CHILD y", { "x" });
    }

    void theChildHasTheEnvironmentOfTheConstruction()
    {
        _fixture->environment.set("QT_IM_MODULE", "ibus");
        _fixture->environment.set("QUORVANE_TEST", "before");
        Entry first(_write({ "Exec=" + _child() }));
        _fixture->environment.set("QUORVANE_TEST", "after");
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
        QStringList states;
        _record(entry.data(), &states);
        // The child has no number yet; 0 would be this process and all of its group.
        connect(entry.data(), &Entry::dataChanged, this, [&](const QString &, const QString &value) {
            if (value == "k starting")
                entry->stop({});
        });
        QSignalSpy raised(entry.data(), &Entry::raiseProcess);
        entry->start({});
        QCOMPARE(states, QStringList("Keywords=k starting"));
        QCOMPARE(_fixture->report("report"), QStringList());
        QTRY_COMPARE(states.mid(1), QStringList("Keywords=k running"));

        // The arguments are expanded, with their warning, even for a program that runs already.
        Messages messages;
        const int pid = entry->pid();
        entry->start({});
        QCOMPARE(raised, QList<QList<QVariant>>({ { pid } }));
        QCOMPARE(messages.take().filter("are not supported").size(), 1);

        entry->stop({});
        QCOMPARE(states.size(), 2);
        QTRY_COMPARE(states.mid(2), QStringList("Keywords=k stopped"));
        entry->start({});
        QCOMPARE(_fixture->report("report"), QStringList());
        QTRY_COMPARE(states.mid(3), QStringList({ "Keywords=k starting", "Keywords=k running" }));
        const int again = entry->pid();
        QVERIFY(again > 0 && again != pid);
        QCOMPARE(raised.count(), 1);

        // Destruction kills, and says nothing.
        entry.reset();
        QCOMPARE(kill(again, 0), -1);
        QCOMPARE(states.size(), 5);
    }

    void whatCannotRunIsStoppedOrNeverStarts()
    {
        const auto check = [this](const char *command, const QString &states, int warnings) {
            Entry entry(_write({ QString("Exec=") + command }));
            QStringList seen;
            _record(&entry, &seen);
            Messages messages;
            entry.start({});
            QTRY_COMPARE(seen.join(','), states);
            QCOMPARE(messages.take().filter("Can't find a way to start").size(), warnings);
        };
        check("/no/such/program", "Keywords= starting,Keywords= stopped", 0);
        check("%f x", "Keywords= starting,Keywords= stopped", 0);
        check("''", "", 0);
        check("\" \\t \"", "", 1);
    }

    void aStopActionNeedsAFreeProcess()
    {
        const QString stop = "[Desktop Action Stop]\nExec=" + _child("%f");
        Entry running(_write({ "Exec=" + _child(), stop }));
        running.start({});
        QCOMPARE(_fixture->report("report"), QStringList());
        Messages messages;
        running.stop({});
        QCOMPARE(messages.take().join('|'),
                 "default warning: QProcess::start: Process is already running");
        QCOMPARE(kill(running.pid(), 0), 0);
        Entry ended(_write({ stop }));
        ended.stop({ "x" });
        QCOMPARE(_fixture->report("report"), QStringList("x"));
        QTRY_COMPARE(ended.data("Desktop Entry/Keywords"), " running");
    }

private:
    QString _write(const QStringList &lines) { return _fixture->write("a.desktop", lines); }
    QString _child(const QString &args = {}) { return _fixture->childCommand("report", args); }
    void _record(Entry *entry, QStringList *changes)
    {
        connect(entry, &Entry::dataChanged, this, [=](const QString &key, const QString &value) {
            *changes += key.section('/', 1) + '=' + value;
        });
    }

    QScopedPointer<DesktopFixture> _fixture;
};

QTEST_GUILESS_MAIN(TestEntry)
#include "tst_entry.moc"
