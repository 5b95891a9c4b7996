#include "applications.h"
#include "desktopfixture.h"
#include "signallog.h"

#include <QAbstractItemModelTester>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QQmlComponent>
#include <QQmlEngine>

#include <csignal>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// An application on the bus. It writes down what it is asked for.
struct Service : QDBusVirtualObject
{
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        const QVariantList arguments = message.arguments();
        file.write(qPrintable(message.member() + arguments.value(0).toStringList().join(',') + ';'));
        file.flush();
        return bus.send(message.createReply());
    }
    QFile file;
};

QString read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

// A zombie counts as running.
bool runs(qint64 pid)
{
    return pid > 0 && kill(static_cast<pid_t>(pid), 0) == 0;
}

int inotifyInstances()
{
    int count = 0;
    const QFileInfoList files
            = QDir("/proc/self/fd").entryInfoList(QDir::AllEntries | QDir::System);
    for (const QFileInfo &file : files)
        count += file.symLinkTarget().endsWith("inotify");
    return count;
}

} // namespace

class ApplicationsTest : public QObject
{
    Q_OBJECT

    QVariantMap _get(const QString &appId) const
    {
        for (int row = 0; row < _model->count(); ++row) {
            if (_model->get(row).value("appId") == appId)
                return _model->get(row);
        }
        return {};
    }
    qint64 _pid(const QString &appId) const { return _get(appId).value("pid").toLongLong(); }
    QString _ids() const
    {
        QStringList ids;
        for (int row = 0; row < _model->count(); ++row)
            ids += _model->index(row).data(Applications::AppIdRole).toString();
        return ids.join(' ');
    }
    QString _app(const QString &appId, const QStringList &lines = { "Exec=true" },
                 const QString &folder = "home") const
    {
        const QString path = folder + "/applications/" + appId + ".desktop";
        return _fixture.write(path, QStringList { "Type=Application", "Name=" + appId } + lines);
    }
    void _load()
    {
        // Models that live at the same time share what was read.
        _tester.reset();
        _model.reset();
        _model = std::make_unique<Applications>();
        _tester = std::make_unique<QAbstractItemModelTester>(_model.get());
        connect(_model.get(), &Applications::failed, this,
                [this](const QString &, const QString &message) { _failures += message; });
    }

    const DesktopFixture _fixture;
    std::unique_ptr<Applications> _model;
    std::unique_ptr<QAbstractItemModelTester> _tester;
    QStringList _failures;

private Q_SLOTS:
    void cleanup()
    {
        _tester.reset();
        _model.reset();
        _failures.clear();
        for (const char *folder : { "home", "one", "two" })
            QDir(_fixture.path(folder)).removeRecursively();
    }

    void rowsAreWhatThisDesktopShows()
    {
        const QString path
                = _app("plain", { "Exec=true", "Comment=One; two, \"three\"", "Icon=x.png",
                                  "GenericName=Thing", "Categories=Network;Chat;X-Mine;",
                                  "Keywords=a b;c;", "Terminal=true", "Actions=new;",
                                  "[Desktop Action new]", "Name=New", "Exec=true" });
        _app("kde/sub", { "Exec=true", "OnlyShowIn=GNOME;TEST;", "Categories=Utility;" });
        _app("noDisplay", { "Exec=true", "NoDisplay=true", "Categories=Game;" });
        _app("elsewhere", { "Exec=true", "NotShowIn=TEST" });
        _app("hidden", { "Exec=true", "Hidden=true" });
        _app("tryExec", { "Exec=true", "TryExec=nowhere-to-be-found" });
        _fixture.writeBytes("home/applications/binary.desktop", QByteArray(9999, '\xff'));
        QFile::resize(_app("huge"), qint64(1) << 33);
        const QDir folder(_fixture.path("home/applications"));
        QVERIFY(folder.mkdir("folder.desktop"));
        QVERIFY(QFile::link(".", folder.filePath("loop")));
        QVERIFY(QFile::link("/dev/zero", folder.filePath("endless.desktop")));
        QCOMPARE(mkfifo(qPrintable(folder.filePath("pipe.desktop")), 0600), 0);
        for (const char *masked : { "plain", "hidden", "endless" })
            _app(masked, { "Exec=true" }, "two");

        _load();
        QCOMPARE(_ids(), "kde-sub plain");
        QCOMPARE(_model->categories(), QStringList({ "Network", "Utility" }));
        const QVariantMap action { { "id", "new" }, { "name", "New" } };
        const QVariantMap expected { { "appId", "plain" },
                                     { "name", "plain" },
                                     { "genericName", "Thing" },
                                     { "comment", "One; two, \"three\"" },
                                     { "keywords", QStringList { "a b", "c" } },
                                     { "categories", QStringList { "Network", "Chat", "X-Mine" } },
                                     { "iconSource", "image://quorvane/icon/x" },
                                     { "terminal", true },
                                     { "actions", QVariantList { action } },
                                     { "running", false },
                                     { "pid", 0 },
                                     { "path", path } };
        QCOMPARE(_model->get(1), expected);
        QVERIFY(_model->get(2).isEmpty() && _model->get(-1).isEmpty());
        _model->setShowAll(true);
        QCOMPARE(_ids(), "elsewhere kde-sub noDisplay plain");
        _model->setCategory("Chat");
        QCOMPARE(_ids(), "plain");
    }

    // Run in German and in the C locale.
    void namesAndOrderFollowTheUsersLanguage()
    {
        const bool german = QLocale().language() == QLocale::German;
        for (const char *name : { "Zelt", "GParted", "GNU Paint", "Geany", "gzip" })
            _app(name);
        _app("over", { "Exec=true", QString::fromUtf8("Name[de]=Übung") });
        _app("Auto", { "Exec=true", QString::fromUtf8("Name[de]=Öffner") });
        _load();
        QCOMPARE(_ids(), german ? "Geany GNU Paint GParted gzip Auto over Zelt"
                                : "Auto Geany GNU Paint GParted gzip over Zelt");
        _model->setSearch("UBUNG");
        QCOMPARE(_ids(), german ? "over" : "");
    }

    void searchFindsWords()
    {
        _app("org.moz.fox", { "Name=Fire Fox", "GenericName=Web Browser", "Exec=true" });
        for (const char *name : { "XTerm", "UXTerm" })
            _app(name, { "Exec=true", "Keywords=shell;" });
        for (const char *name : { "C++ (IDE)", "Notes", "Tea" })
            _app(name);
        _load();
        const QString all = "C++ (IDE) org.moz.fox Notes Tea UXTerm XTerm";
        const QStringList table[] = {
            { "xterm", "XTerm UXTerm" }, // An exact name comes first.
            { " web  fire", "org.moz.fox" },
            { "moz", "org.moz.fox" },
            { "shell", "UXTerm XTerm" },
            { "t", "Tea Notes UXTerm XTerm" }, // Beginnings come before what is within.
            { "rowser", "" },
            { "c++", "C++ (IDE)" },
            { "(", "C++ (IDE)" },
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

    // Run without GLib's main loop as well.
    void filesComeAndGo()
    {
        _load();
        QCOMPARE(_ids(), "");
        for (const char *name : { "b", "c", "sub/d" })
            _app(name);
        _app("a", { "Exec=sleep 99" });
        QTRY_COMPARE(_ids(), "a b c sub-d");
        _model->launch("a");
        const qint64 pid = _pid("a");
        QVERIFY(_get("a").value("running").toBool() && runs(pid));
        SignalLog log({ _model.get() });

        const QString path = _app("new", { "Name=z", "Exec=true" });
        QCOMPARE(rename(qPrintable(path), qPrintable(_fixture.path("home/applications/a.desktop"))),
                 0);
        QTRY_COMPARE(_ids(), "b c sub-d a");
        QVERIFY(!log.lines.filter("rowsMoved").isEmpty());
        _app("sub/e");
        QTRY_COMPARE(_ids(), "b c sub-d sub-e a");
        QVERIFY(log.lines.filter("rowsRemoved").isEmpty());
        QFile::remove(_fixture.path("home/applications/a.desktop"));
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
        QTRY_VERIFY(!_get("a").value("running").toBool() && !runs(pid));
    }

    void aFileIsWrittenInPlace()
    {
        _app("a", { "Comment=One", "Exec=true" });
        _load();
        const Applications second;
        QCOMPARE(inotifyInstances(), 1);
        QSignalSpy changes(_model.get(), &Applications::dataChanged);
        _app("a", { "Comment=Two", "Exec=true" });
        QTRY_COMPARE(_get("a").value("comment"), "Two");
        QCOMPARE(changes.first().at(2).value<QVector<int>>(), { Applications::CommentRole });
    }

    void programsAreLaunched()
    {
        _app("files", { "Exec=" + _fixture.childCommand("report", "%U 'a b' %c"), "Actions=new;",
                        "[Desktop Action new]", "Exec=" + _fixture.childCommand("new", "x") });
        _app("terminal", { "Terminal=true", "Exec=sh 'a b'", "Path=" + _fixture.path("home") });
        QVERIFY(QFile::link(CHILD, _fixture.path("home/xdg-terminal-exec")));
        qputenv("PATH", qPrintable(_fixture.path("home:")) + qgetenv("PATH"));
        _load();

        _model->launch("files", { QUrl("https://example.org/%20"), QUrl("/tmp/a b") });
        QCOMPARE(_fixture.report("report"),
                 QStringList({ "https://example.org/%20", "/tmp/a b", "a b", "files" }));
        const qint64 first = _pid("files");
        _model->launchAction("files", "new");
        QCOMPARE(_fixture.report("new"), QStringList { "x" });
        const qint64 second = _pid("files");
        QVERIFY(first != second && runs(first) && runs(second));
        _model->stop("files");
        QTRY_VERIFY(_pid("files") == 0 && !runs(first) && !runs(second));

        _model->launch("terminal");
        QCOMPARE(_fixture.report("home/sh"), QStringList { "a b" });
        _model->stop("terminal");
        QTRY_COMPARE(_pid("terminal"), 0);
        QCOMPARE(_failures, QStringList());
    }

    void failuresAreTold()
    {
        const QMap<QString, QStringList> table {
            { "code 3", { "Exec=sh -c 'exit 3'" } },
            { "signal 11", { "Exec=sh -c 'kill -SEGV $$'" } },
            { "/nonexistent", { "Path=/nonexistent", "Exec=true" } },
            { "Exec", {} },
            { "not installed", { "Exec=nowhere-to-be-found" } },
            { "provided", { "Exec=true", "DBusActivatable=true" } },
        };
        for (auto row = table.cbegin(); row != table.cend(); ++row) {
            _app("org.example.failing", *row);
            _load();
            _model->launch("org.example.failing");
            QTRY_COMPARE(_failures.size(), 1);
            QVERIFY2(_failures.takeFirst().contains(row.key()), qPrintable(row.key()));
        }
        _model->launchAction("org.example.failing", "none");
        QCOMPARE(_failures.size(), 1);
    }

    void theBusActivates()
    {
        _app("org.example.service", { "DBusActivatable=true", "Actions=a;", "[Desktop Action a]" });
        QProcess service;
        service.start(QCoreApplication::applicationFilePath(),
                      { "service", _fixture.path("asked") });
        QVERIFY(service.waitForReadyRead());
        _load();
        _model->launch("org.example.service");
        QTRY_COMPARE(_pid("org.example.service"), service.processId());
        _model->launch("org.example.service", { QUrl("http://x/") });
        _model->launchAction("org.example.service", "a");
        QTRY_COMPARE(read(_fixture.path("asked")), "Activate;Openhttp://x/;ActivateActiona;");
        _model->stop("org.example.service");
        QTRY_COMPARE(_pid("org.example.service"), 0);
        QTRY_COMPARE(service.state(), QProcess::NotRunning);
    }

    void programsOutliveTheShell()
    {
        _app("a",
             { "Exec=sh -c 'echo hello; echo $$ >" + _fixture.path("pid") + "; exec sleep 99'" });
        QProcess shell;
        shell.start(QCoreApplication::applicationFilePath(), { "shell", _fixture.path("pid") });
        QTRY_COMPARE(shell.state(), QProcess::NotRunning);
        QCOMPARE(shell.readAllStandardOutput(), "hello\n");
        const int pid = read(_fixture.path("pid")).toInt();
        QVERIFY(runs(pid) && getsid(pid) == pid);
        kill(pid, SIGKILL);
    }

    void theExampleLaunchesTheBestMatch()
    {
        for (const char *name : { "UXTerm", "XTerm" })
            _app(name, { "Exec=sh -c 'echo $0 >" + _fixture.path("started") + "' %c" });
        QQmlEngine engine;
        engine.addImportPath(IMPORT_PATH);
        QQmlComponent component(&engine, QUrl::fromLocalFile(EXAMPLES "/launcher.qml"));
        const std::unique_ptr<QObject> window(component.create());
        QVERIFY2(window, qPrintable(component.errorString()));
        const auto children = window->findChildren<QObject *>();
        for (QObject *child : children) {
            if (child->setProperty("text", "xterm"))
                QMetaObject::invokeMethod(child, "accepted");
        }
        QTRY_COMPARE(read(_fixture.path("started")), "XTerm");
    }
};

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "shell") {
        Applications().launch("a");
        return QTest::qWaitFor([&] { return !read(arguments.value(2)).isEmpty(); }) ? 0 : 1;
    }
    if (arguments.value(1) == "service") {
        Service service;
        service.file.setFileName(arguments.value(2));
        service.file.open(QIODevice::WriteOnly);
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.registerVirtualObject("/org/example/service", &service);
        bus.registerService("org.example.service");
        std::puts("ready");
        std::fflush(stdout);
        return QCoreApplication::exec();
    }
    qputenv("XDG_CURRENT_DESKTOP", "TEST");
    ApplicationsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_applications.moc"
