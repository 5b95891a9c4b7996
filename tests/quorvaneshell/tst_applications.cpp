#include "desktopfixture.h"
#include "signallog.h"

#include <quorvaneshell/applications/applications.h>

#include <QAbstractItemModelTester>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QGuiApplication>

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

using namespace quorvane;

// An application on the bus, which prints what it is asked for.
struct Service : QDBusVirtualObject
{
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        const QString first = message.arguments().value(0).toStringList().join(',');
        std::puts(qPrintable(message.member() + first));
        // A program may take its time.
        return std::fflush(stdout) == 0
               && (message.member() == "Activate" || bus.send(message.createReply()));
    }
};

class ApplicationsTest : public QObject
{
    Q_OBJECT

    void _app(const QString &appId, const QStringList &lines = { "Exec=true" },
              const QString &folder = "home") const
    {
        _fixture.write(folder + "/applications/" + appId + ".desktop",
                       QStringList { "Type=Application", "Name=" + appId } + lines);
    }
    QString _read(const QString &name) const
    {
        QFile file(_fixture.path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().simplified() : QByteArray();
    }
    // Models that live at the same time share what was read.
    void _load()
    {
        _model.reset();
        _model.reset(new Applications);
        new QAbstractItemModelTester(_model.get(), _model.get());
        connect(_model.get(), &Applications::failed, this,
                [this](const QString &, const QString &message) { _failures += message; });
    }
    QString _ids() const
    {
        QStringList ids;
        for (int row = 0; row < _model->count(); ++row)
            ids += _model->get(row).value("appId").toString();
        return ids.join(' ');
    }
    qint64 _pid(const QString &appId) const
    {
        return _model->find(appId).value("pid").toLongLong();
    }
    // A zombie counts as running.
    static bool _runs(qint64 pid) { return pid > 0 && kill(static_cast<pid_t>(pid), 0) == 0; }

    const DesktopFixture _fixture;
    std::unique_ptr<Applications> _model;
    QStringList _failures;

private Q_SLOTS:
    void cleanup()
    {
        _model.reset();
        _failures.clear();
        for (const char *folder : { "home", "two" })
            QDir(_fixture.path(folder)).removeRecursively();
    }

    void rowsAreWhatThisDesktopShows()
    {
        _app("plain", { "Exec=true", "Comment=1; 2, 3", "GenericName=Thing", "Terminal=true",
                        "Icon=x.png", "Categories=Network;Chat;X-Mine;", "Keywords=a b;c\\;d;",
                        "Actions=new;", "[Desktop Action new]", "Name=New", "Icon=y", "Exec=true" });
        _app("kde/sub", { "Exec=true", "OnlyShowIn=GNOME;TEST;", "Categories=Utility;Audio;" });
        _app("noDisplay", { "Exec=true", "NoDisplay=true", "Categories=Game;" });
        _app("elsewhere", { "Exec=true", "NotShowIn=TEST" });
        _app("hidden", { "Exec=true", "Hidden=true" });
        _app("tryExec", { "Exec=true", "TryExec=nowhere-to-be-found" });
        _app("huge");
        _app("noProgram", {});
        _fixture.write("home/applications/noName.desktop", { "Type=Application", "Exec=true" });
        const QDir folder(_fixture.path("home/applications"));
        QVERIFY(QFile::resize(folder.filePath("huge.desktop"), qint64(1) << 33));
        QVERIFY(folder.mkdir("folder.desktop"));
        for (const char *loop : { "loop", "second" })
            QVERIFY(QFile::link(".", folder.filePath(loop)));
        QVERIFY(QFile::link("/dev/zero", folder.filePath("endless.desktop")));
        QCOMPARE(mkfifo(qPrintable(folder.filePath("pipe.desktop")), 0600), 0);
        _fixture.writeBytes("home/applications/binary.desktop", QByteArray(9999, '\xff'));
        for (const char *masked : { "plain", "hidden", "endless" })
            _app(masked, { "Exec=true" }, "two");

        _load();
        QCOMPARE(_ids(), "kde-sub plain");
        QCOMPARE(_model->categories(), QStringList({ "Utility", "Network", "AudioVideo" }));
        auto row = QJsonObject::fromVariantMap(_model->get(1));
        QCOMPARE(row.take("path"), folder.filePath("plain.desktop"));
        const QString text = QJsonDocument(row).toJson(QJsonDocument::Compact).replace('"', '\'');
        QCOMPARE(text, "{'actions':[{'iconSource':'image://quorvane/icon/y','id':'new',"
                       "'text':'New'}],'appId':'plain','categories':["
                       "'Network','Chat','X-Mine'],'comment':'1; 2, 3','genericName':'Thing',"
                       "'iconSource':'image://quorvane/icon/x','keywords':['a b','c;d'],"
                       "'name':'plain','pid':0,'running':false,'terminal':true}");
        QVERIFY(_model->get(2).isEmpty() && _model->get(-1).isEmpty());
        const QModelIndex index = _model->index(1);
        QCOMPARE(index.data().toString() + index.data(Qt::ToolTipRole).toString(), "plain1; 2, 3");
        QVERIFY(index.data(Qt::DecorationRole).canConvert<QIcon>());
        QVERIFY(_model->indexOf("plain") == 1 && _model->indexOf("noDisplay") == -1);
        _model->setShowAll(true);
        QCOMPARE(_ids(), "elsewhere kde-sub noDisplay plain");
        QVERIFY(_model->find("plain") == _model->get(3) && _model->find("hidden").isEmpty());
        _model->setCategory("Chat");
        QCOMPARE(_ids(), "plain");
        _model->setCategory("AudioVideo");
        QCOMPARE(_ids(), "kde-sub");
    }

    // Run in German and in the C locale.
    void namesAndOrderFollowTheUsersLanguage()
    {
        const bool german = QLocale().language() == QLocale::German;
        for (const char *name : { "Zelt", "GParted", "GNU-Paint", "Geany", "gzip" })
            _app(name);
        _app("over", { "Exec=true", QString::fromUtf8("Name[de]=Übung") });
        _app("Auto", { "Exec=true", QString::fromUtf8("Name[de]=Öffner") });
        _load();
        QCOMPARE(_ids(), german ? "Geany GNU-Paint GParted gzip Auto over Zelt"
                                : "Auto Geany GNU-Paint GParted gzip over Zelt");
        _model->setSearch("UBUNG");
        QCOMPARE(_ids(), german ? "over" : "");
        _fixture.write("home/desktop-directories/Game.directory", { "Name=Fun", "Name[de]=Spiel" });
        QCOMPARE(_model->categoryName("Game"), german ? "Spiel" : "Fun");
        QCOMPARE(_model->categoryName("Network") + _model->categoryName("X-M"), "InternetX-M");
    }

    void searchFindsWords()
    {
        _app("org.moz.fox",
             { "Name=Fire Fox", "GenericName=Web Browser", "Exec=true", "Comment=Reads mail" });
        _app("mailer", { "Name=Airmail", "Exec=true", "X-GNOME-FullName=Wide Kite" });
        _app("XTerm", { "Exec=true", "Keywords=shell;" });
        for (const char *name : { "UXTerm", "C++(IDE)", "Hot-tea", "Tea" })
            _app(name);
        _load();
        const QString all = "mailer C++(IDE) org.moz.fox Hot-tea Tea UXTerm XTerm";
        const QStringList table[] = {
            { "xterm", "XTerm UXTerm" },
            { "t", "Tea Hot-tea" },
            { " web  fire", "org.moz.fox" },
            { "moz", "org.moz.fox" },
            { "mo", "" },
            { "mail", "org.moz.fox mailer" },
            { "kite", "mailer" },
            { "mail wide", "mailer" },
            { "shell", "XTerm" },
            { "tea", "Tea Hot-tea" },
            { "rowser", "" },
            { "c++", "C++(IDE)" },
            { "(", "C++(IDE)" },
            { ".*", "" },
            { "  ", all },
        };
        for (const QStringList &row : table) {
            _model->setSearch(row.first());
            QCOMPARE(row.first() + ':' + _ids(), row.join(':'));
            _model->setSearch({});
            QCOMPARE(_ids(), all);
        }
    }

    Q_INVOKABLE void _deleteModel() { _model.reset(); }

    // Beyond a hundred steps the rows change at once.
    void aSlotMaySearch()
    {
        for (int i = 0; i < 300; ++i)
            _app(QString::number(i), { "Exec=true", i % 3 ? "Keywords=odd;" : "GenericName=7" });
        _load();
        QSignalSpy counts(_model.get(), &Applications::countChanged);
        for (const char *search : { "7", "1", "odd", "odd 2", "" }) {
            const QPersistentModelIndex index = _model->index(7);
            const QString appId = _model->get(7).value("appId").toString();
            _model->setSearch(search);
            if (index.isValid())
                QCOMPARE(_model->get(index.row()).value("appId").toString(), appId);
        }
        QCOMPARE(counts.size(), 5);
        connect(_model.get(), &Applications::countChanged, this, [this] {
            if (_model->count() == 0)
                _model->setSearch({});
        });
        _model->setSearch("nothing at all");
        QCOMPARE(_model->count(), 300);
        QCOMPARE(counts.size(), 7);
        connect(_model.get(), &Applications::rowsRemoved, this, [this] { _model->setSearch({}); });
        _model->setSearch("nothing");
        QCOMPARE(_model->count(), 300);
        QCOMPARE(counts.size(), 7);
        _model->setCategory("Game");
        QCOMPARE(_model->count(), 0);
    }

    // On each signal but those of what is about to come, which no model of Qt survives.
    void aSlotMayDeleteTheModel()
    {
        for (int i = 0; i < 220; ++i)
            _app(QString::number(i), { "Exec=true", i % 2 ? "Keywords=odd;" : "Comment=9 odd" });
        _app("game", { "Exec=true", "Categories=Game;", "NoDisplay=true" });
        QStringList survived;
        const auto slot = metaObject()->method(metaObject()->indexOfMethod("_deleteModel()"));
        for (int i = 0; i < Applications::staticMetaObject.methodCount(); ++i) {
            const QMetaMethod signal = Applications::staticMetaObject.method(i);
            if (signal.methodType() != QMetaMethod::Signal || signal.name().contains("About"))
                continue;
            _load();
            connect(_model.get(), signal, this, slot);
            const std::function<void()> steps[] = {
                [this] { _model->setSearch("9"); },      [this] { _model->setSearch("10 "); },
                [this] { _model->setSearch("odd"); },    [this] { _model->setSearch({}); },
                [this] { _model->setCategory("Game"); }, [this] { _model->setShowAll(true); },
                [this] { _model->launch("none"); },      [this] { _model->launch("game"); },
            };
            for (const auto &step : steps) {
                if (_model)
                    step();
            }
            if (!_model)
                survived += signal.name();
        }
        survived.removeDuplicates();
        survived.sort();
        QCOMPARE(survived.join(' '),
                 "categoriesChanged categoryChanged countChanged dataChanged failed layoutChanged "
                 "rowsInserted rowsMoved rowsRemoved searchChanged showAllChanged");
    }

    // Run without GLib's main loop as well.
    void filesComeAndGo()
    {
        const bool glib = !qEnvironmentVariableIsSet("QT_NO_GLIB");
        _load();
        const Applications second;
        QCOMPARE(_ids(), "");
        for (const char *name : { "b", "c", "sub/d" })
            _app(name);
        _app("a", { "Exec=sleep 99" });
        QTRY_COMPARE(_ids(), "a b c sub-d");
        _model->launch("a");
        const qint64 pid = _pid("a");
        QVERIFY(_runs(pid));
        SignalLog log({ _model.get() });

        _app("new", { "Name=z", "Exec=true" });
        const QDir folder(_fixture.path("home/applications"));
        QCOMPARE(rename(qPrintable(folder.filePath("new.desktop")),
                        qPrintable(folder.filePath("a.desktop"))),
                 0);
        QTRY_COMPARE(_ids(), "b c sub-d a");
        _app("sub/e");
        QTRY_COMPARE(_ids(), "b c sub-d sub-e a");
        QVERIFY(!log.lines.filter("rowsMoved").isEmpty()
                && log.lines.filter("rowsRemoved").isEmpty());
        if (glib) {
            QSignalSpy changes(_model.get(), &Applications::dataChanged);
            _app("b", { "Comment=Written in place", "Exec=true" });
            QVERIFY(changes.wait());
            QCOMPARE(changes.first().at(2).value<QVector<int>>(),
                     QVector<int>({ Qt::ToolTipRole, Applications::CommentRole }));
        }
        QFile::remove(folder.filePath("a.desktop"));
        QTRY_COMPARE(_ids(), "b c sub-d sub-e");
        _app("a", { "Exec=true" }, "two");
        QTRY_COMPARE(_ids(), "a b c sub-d sub-e");
        _app("a", { "Exec=true", "Hidden=true" });
        QTRY_COMPARE(_ids(), "b c sub-d sub-e");
        QDir(_fixture.path("home")).removeRecursively();
        QTRY_COMPARE(_ids(), "a");
        _app("b");
        QTRY_COMPARE(_ids(), "a b");
        QVERIFY(log.lines.filter("modelReset").isEmpty());
        QCOMPARE(_pid("a"), pid);
        _model->stop("a");
        QTRY_VERIFY(_pid("a") == 0 && !_runs(pid));

        int instances = 0;
        const QFileInfoList files = QDir("/proc/self/fd").entryInfoList(QDir::System);
        for (const QFileInfo &file : files)
            instances += file.symLinkTarget().endsWith("inotify");
        QCOMPARE(instances, 1);
    }

    void programsAreLaunched()
    {
        _app("files", { "Exec=" + _fixture.childCommand("report", "%U 'a b' %c"), "Actions=new;",
                        "[Desktop Action new]", "Exec=" + _fixture.childCommand("new", "x") });
        _app("terminal", { "Terminal=true", "Exec=sh 'a b'", "Path=" + _fixture.path("home") });
        _app("sort", { "Exec=sort c", "Path=" + _fixture.path("home") });
        QVERIFY(QFile::link(CHILD, _fixture.path("home/xdg-terminal-exec")));
        qputenv("PATH", qPrintable(_fixture.path("home:")) + qgetenv("PATH"));
        _load();

        for (const char *own :
             { "DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN", "QT_WAYLAND_SHELL_INTEGRATION" })
            qputenv(own, "of the shell");
        const QUrl url("https://example.org/%20");
        _model->launch("files", { url, QUrl("file:///tmp/a%20b"), "/tmp/a#b?%41", "x:y" });
        QTRY_VERIFY(QFile::exists(_fixture.path("report")));
        QVERIFY(!_read("report").contains("of the shell"));
        QCOMPARE(_fixture.report("report").join('|'),
                 "https://example.org/%20|/tmp/a b|/tmp/a#b?%41|x:y|a b|files");
        const qint64 first = _pid("files");
        _model->invoke("files", "new");
        QCOMPARE(_fixture.report("new"), QStringList { "x" });
        const qint64 second = _pid("files");
        QVERIFY(first != second && _runs(first) && _runs(second));
        _model->launch("terminal");
        QCOMPARE(_fixture.report("home/sh"), QStringList { "a b" });
        _model->launchInTerminal("sort");
        QCOMPARE(_fixture.report("home/sort"), QStringList { "c" });
        _model->stop("sort");
        _model->stop("files");
        _model->stop("terminal");
        QTRY_VERIFY(_pid("files") + _pid("terminal") == 0 && !_runs(first) && !_runs(second));
        QCOMPARE(_failures, QStringList());
    }

    void windowsAndProcessesAreIdentified()
    {
        _app("org.example.Sleeper", { "Exec=env A=b sleep %F", "StartupWMClass=Bed" });
        _load();
        QProcess sleeper;
        sleeper.start("sleep", { "60" });
        const auto wakeUp = qScopeGuard([&sleeper] {
            sleeper.kill();
            sleeper.waitForFinished();
        });
        QVERIFY(sleeper.waitForStarted());
        const qint64 pid = sleeper.processId();
        QTRY_COMPARE(_model->identify({}, pid), "org.example.Sleeper");
        QCOMPARE(_model->identify("bed"), "org.example.Sleeper");
        QCOMPARE(_model->identify("other", pid), "org.example.Sleeper");
        QCOMPARE(_model->identify("other"), QString());
        // Another that is as good.
        _app("org.example.Dozer", { "Exec=sleep" });
        QTRY_COMPARE(_model->identify({}, pid), QString());
        QCOMPARE(_model->identify("dozer", pid), "org.example.Dozer");
    }

    void failuresAreTold()
    {
        const QStringList table[] = {
            { "code 3", "Exec=sh -c 'exit 3'" },
            { "signal 11", "Exec=sh -c 'kill -SEGV $$'" },
            { "/no", "Exec=true", "Path=/no/such" },
            { "not installed", "Exec=nowhere-to-be-found" },
            { "installed" },
            { "provided", "DBusActivatable=true" },
            { "code 3", "DBusActivatable=true", "Exec=sh -c 'exit 3'" },
        };
        for (const QStringList &row : table) {
            _app("org.example.failing", row.mid(1));
            _load();
            _model->launch("org.example.failing");
            QTRY_COMPARE(_failures.size(), 1);
            QVERIFY2(_failures.takeFirst().contains(row.first()), qPrintable(row.first()));
        }
        _model->invoke("org.example.failing", "none");
        _model->launch("org.example.failing", { "a.txt" });
        const QString path = _model->find("org.example.failing").value("path").toString();
        QVERIFY(QFile::remove(path) && mkfifo(qPrintable(path), 0600) == 0);
        _model->launchInTerminal("org.example.failing");
        QCOMPARE(_failures.size(), 3);
    }

    void theBusActivates()
    {
        _app("org.example.service", { "DBusActivatable=true", "Actions=a;", "[Desktop Action a]" });
        QProcess service;
        service.setStandardOutputFile(_fixture.path("asked"));
        service.start(QCoreApplication::applicationFilePath(), { "service" });
        QTRY_COMPARE(_read("asked"), "ready");
        _load();
        _model->launch("org.example.service");
        QTRY_COMPARE(_pid("org.example.service"), service.processId());
        _model->launch("org.example.service", { QUrl("http://x/") });
        _model->invoke("org.example.service", "a");
        QTRY_COMPARE(_read("asked"), "ready Activate Openhttp://x/ ActivateActiona");
        _model->stop("org.example.service");
        QTRY_COMPARE(_pid("org.example.service"), 0);
        QTRY_COMPARE(service.state(), QProcess::NotRunning);
    }

    void programsOutliveTheShell()
    {
        _app("a", { "Exec=sh -c 'echo $$ && exec sleep 99'" });
        QProcess shell;
        shell.setStandardOutputFile(_fixture.path("output"));
        shell.start(QCoreApplication::applicationFilePath(), { "shell" });
        QTRY_VERIFY(shell.state() == QProcess::NotRunning && !_read("output").isEmpty());
        const int pid = _read("output").toInt();
        QVERIFY(_runs(pid) && getsid(pid) == pid);
        kill(pid, SIGKILL);
    }
};

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    if (application.arguments().value(1) == "shell") {
        Applications().launch("a");
        return 0;
    }
    if (application.arguments().value(1) == "service") {
        Service service;
        QDBusConnection::sessionBus().registerVirtualObject("/org/example/service", &service);
        QDBusConnection::sessionBus().registerService("org.example.service");
        std::puts("ready");
        std::fflush(stdout);
        return application.exec();
    }
    qputenv("XDG_CURRENT_DESKTOP", "TEST");
    ApplicationsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_applications.moc"
