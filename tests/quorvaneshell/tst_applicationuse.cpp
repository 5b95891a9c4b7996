#include "desktopfixture.h"

#include <quorvaneshell/applications/applications.h>

#include <sys/stat.h>

using namespace quorvane;

// What people use: the order by use, and what opens what.
class ApplicationUseTest : public QObject
{
    Q_OBJECT

    void _app(const QString &appId, const QString &mimeTypes = {},
              const QString &folder = "home") const
    {
        _fixture.write(folder + "/applications/" + appId + ".desktop",
                       { "Type=Application", "Name=" + appId, "MimeType=" + mimeTypes,
                         "Exec=" + _fixture.childCommand(appId) });
    }
    void _write(const QString &path, const QByteArray &text) const
    {
        _fixture.writeBytes(path, text);
    }
    QByteArray _read(const QString &path) const
    {
        QFile file(_fixture.path(path));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QString _ids(const Applications &model)
    {
        QStringList ids;
        for (int row = 0; row < model.count(); ++row)
            ids += model.get(row).value("appId").toString();
        return ids.join(' ');
    }
    // Launches and waits until it runs.
    void _launch(Applications *model, const QString &appId) const
    {
        model->launch(appId);
        QCOMPARE(_fixture.report(appId), QStringList());
    }
    QStringList _keptIds() const { return QJsonDocument::fromJson(_read(_file)).object().keys(); }

    const DesktopFixture _fixture;
    const QString _file = "state/quorvane/application-usage.json";

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_STATE_HOME", _fixture.path("state").toLocal8Bit());
        qputenv("XDG_CURRENT_DESKTOP", "TEST:Other");
    }
    void init()
    {
        QVERIFY(QDir().mkpath(_fixture.path("two"))
                && QFile::link("/usr/share/mime", _fixture.path("two/mime")));
    }
    void cleanup()
    {
        for (const char *folder : { "home", "one", "two", "state" })
            QDir(_fixture.path(folder)).removeRecursively();
    }

    void whatIsUsedMostComesFirst()
    {
        for (const char *appId : { "a", "b", "bb", "c" })
            _app(appId);
        Applications plain;
        _launch(&plain, "c");
        plain.forgetUse("a");
        QVERIFY(_keptIds().isEmpty());
        {
            Applications model;
            model.setOrder(Applications::ByUse);
            QSignalSpy moves(&model, &Applications::rowsMoved);
            _launch(&plain, "c");
            QCOMPARE(_ids(model) + '/' + _ids(plain), "c a b bb/a b bb c");
            _launch(&model, "bb");
            _launch(&model, "bb");
            model.launch("bb", { "no url" });
            QCOMPARE(_ids(model), "bb c a b");
            QCOMPARE(moves.size(), 2);
            model.setSearch("b");
            QCOMPARE(_ids(model), "b bb");
            QVERIFY(!QFile::exists(_fixture.path(_file)));
            // Another process writes meanwhile.
            const QByteArray now = QByteArray::number(QDateTime::currentMSecsSinceEpoch());
            _write(_file, "{\"a\":[5," + now + "],\"c\":[0.5," + now + "]}");
        }
        QCOMPARE(_keptIds().join(' '), "a bb c");
        Applications model;
        model.setOrder(Applications::ByUse);
        QCOMPARE(_ids(model), "a bb c b");
        model.forgetUse("a");
        QCOMPARE(_ids(model), "bb c a b");
        QTRY_COMPARE(_keptIds().join(' '), "bb c");
        _launch(&model, "b");
        QTRY_COMPARE(_keptIds().join(' '), "b bb c");
        model.forgetUse();
        QCOMPARE(_ids(model), "a b bb c");
        QTRY_VERIFY(!QFile::exists(_fixture.path(_file)));
    }

    void useFadesAndIsBounded()
    {
        _app("often");
        _app("lately");
        _app("steady");
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        const qint64 day = 24LL * 60 * 60 * 1000;
        const auto entry = [](const QString &appId, double score, qint64 time) {
            return '"' + appId + "\":[" + QString::number(score) + ',' + QString::number(time)
                   + ']';
        };
        QStringList entries { entry("often", 3.9, now - 28 * day), entry("lately", 1, now),
                              entry("steady", 2.5, now), entry("ages", 1, now - 94 * day),
                              entry("less", 1, now - 90 * day) };
        for (int i = 0; i < 497; ++i)
            entries += entry(QString::number(i), 2, now + 9999 * day);
        _write(_file, ('{' + entries.join(',') + '}').toUtf8());
        Applications model;
        model.setOrder(Applications::ByUse);
        QCOMPARE(_ids(model), "steady lately often");
        _launch(&model, "often");
        QCOMPARE(_ids(model), "steady often lately");
        model.setOrder(Applications::ByName);
        QCOMPARE(_keptIds().size(), 500);
        QVERIFY(!_keptIds().contains("less") && !_keptIds().contains("ages"));
    }

    void aFileThatIsBadIsAsNone()
    {
        _app("a");
        _app("b");
        QDir().mkpath(QFileInfo(_fixture.path(_file)).path());
        const std::function<void()> steps[] = {
            [this] { _write(_file, "{\"b\":[5,"); },
            [this] { _write(_file, R"({"b":[1e999,1],"a":{"b":[-5,"x"]},"":[]})"); },
            [this] { QVERIFY(QFile::resize(_fixture.writeBytes(_file, {}), qint64(1) << 33)); },
            [this] { QFile::remove(_fixture.path(_file)); },
            [this] { QCOMPARE(mkfifo(qPrintable(_fixture.path(_file)), 0600), 0); },
            [this] { QVERIFY(QDir().mkpath(_fixture.path(_file) + "/folder")); },
        };
        for (const auto &step : steps) {
            step();
            Applications model;
            model.setOrder(Applications::ByUse);
            QCOMPARE(_ids(model), "a b");
            _launch(&model, "b");
            QCOMPARE(_ids(model), "b a");
            model.setOrder(Applications::ByName);
            QCOMPARE(_ids(model), "a b");
            if (!QFileInfo(_fixture.path(_file)).isDir())
                QFile::remove(_fixture.path(_file));
        }
    }

    void listsSayWhatOpensWhat()
    {
        _app("editor", "text/plain;");
        _app("browser", "text/html;x-scheme-handler/https;");
        _app("viewer", "image/png;image/jpeg;", "one");
        _app("old", "image/png;", "one");
        _app("masked", "image/png;", "one");
        _app("masked", "audio/flac;");
        _app("files", "inode/directory;text/xml;");
        _write("one/applications/mimeinfo.cache",
               "[MIME Cache]\nimage/png=gone.desktop;viewer.desktop;masked.desktop;old.desktop;\n");
        QCOMPARE(mkfifo(qPrintable(_fixture.path("home/applications/pipe.desktop")), 0600), 0);
        Applications model;
        const auto names = [&](const QString &text) { return model.handlers(text).join(' '); };
        QCOMPARE(names("image/png"), "viewer old");
        QCOMPARE(names("text/html; charset=utf-8"), "browser editor");
        QCOMPARE(names("https://example.org/a.png"), "browser");
        QCOMPARE(names("image/svg+xml"), "files editor");
        QCOMPARE(names("image/x-unheard-of") + names("nothing") + names("/dev/null"), "");

        _write("one/etc/mimeapps.list",
               "[Default Applications]\nimage/png=gone.desktop;viewer.desktop;old.desktop\n");
        _write("home/etc/mimeapps.list", "[Added Associations]\nimage/png=editor.desktop;\n"
                                         "[Removed Associations]\nimage/png=viewer.desktop;\n");
        QCOMPARE(names("image/png"), "old editor");
        _write("home/etc/other-mimeapps.list",
               "# Mine\n[Default Applications]\nimage/png=browser.desktop\n"
               "[Added Associations]\nimage/jpeg=old.desktop;\n");
        QCOMPARE(names("image/png"), "browser old editor");
        QCOMPARE(names("image/jpeg"), "viewer");

        QVERIFY(!model.setDefaultHandler("image/png", "gone"));
        QVERIFY(!model.setDefaultHandler("image/png]\n[a", "viewer"));
        QVERIFY(model.setDefaultHandler("image/png", "viewer"));
        QCOMPARE(names("image/png"), "viewer browser old editor");
        QVERIFY(_read("home/etc/other-mimeapps.list").startsWith("# Mine\n"));
        _write("home/etc/mimeapps.list", "no list");
        QVERIFY(!model.setDefaultHandler("image/png", "old"));
        QCOMPARE(_read("home/etc/mimeapps.list"), "no list");
    }

    void filesAreOpenedByWhatTheyAre()
    {
        _app("editor", "text/plain;");
        _app("viewer", "image/png;");
        _app("files", "inode/directory;");
        _write("a b", "\x89PNG\r\n\x1a\n");
        _write("empty", {});
        QVERIFY(QFile::resize(_fixture.path("a b"), qint64(1) << 33));
        QCOMPARE(mkfifo(qPrintable(_fixture.path("x.png")), 0600), 0);
        QVERIFY(QFile::link("/proc/self", _fixture.path("elsewhere")));
        Applications model;
        QSignalSpy failures(&model, &Applications::failed);
        const QString path = _fixture.path("a b");
        model.open(path);
        QCOMPARE(_fixture.report("viewer"), QStringList(path));
        model.open(QUrl::fromLocalFile(path));
        QCOMPARE(_fixture.report("viewer"), QStringList(path));
        QCOMPARE(model.defaultHandler(_fixture.path("empty")), "editor");
        QCOMPARE(model.defaultHandler(_fixture.path("")), "files");
        // It isn't asked whether it is a folder.
        QCOMPARE(model.defaultHandler(_fixture.path("elsewhere/comm.txt")), "editor");
        QCOMPARE(model.defaultHandler(_fixture.path("elsewhere/comm")), "files");
        QCOMPARE(failures.size(), 0);
        for (const QString &text :
             { QString("a b"), QString("gopher://example.org"), _fixture.path("x.png") })
            model.open(text);
        QCOMPARE(failures.size(), 3);
        QCOMPARE(failures.last().first(), QString());
    }
};

QTEST_GUILESS_MAIN(ApplicationUseTest)
#include "tst_applicationuse.moc"
