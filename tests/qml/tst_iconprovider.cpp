#include <iconprovider.h>
#include <iconsource.h>
#include <imagestore.h>

#include <QIcon>
#include <QQmlEngine>
#include <QtTest>

#include <sys/stat.h>

#include <future>
#include <memory>

// Pictures of names, files and pixels, as an Image asks for them.
class IconProviderTest : public QObject
{
    Q_OBJECT

    QString _write(const QString &name, const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(_dir.filePath(name)).path());
        QFile file(_dir.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) > 0 ? file.fileName() : "";
    }
    // Size and colour of what the id gives that Qt Quick makes of the URL.
    QString _shown(const QString &source, const QSize &requested = { 48, 48 })
    {
        const QString id = QUrl(source).toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).mid(1);
        const QImage image = _provider.requestImage(id, nullptr, requested);
        const QString color = image.pixelColor(image.rect().center()).name();
        return QString("%1x%2 %3").arg(image.width()).arg(image.height()).arg(color);
    }

    QTemporaryDir _dir;
    std::unique_ptr<QQmlEngine> _engine = std::make_unique<QQmlEngine>();
    IconProvider _provider { _engine.get() };

private Q_SLOTS:
    void picturesHaveTheSizeThatIsAskedFor()
    {
        QIcon::setThemeSearchPaths({ _dir.path() });
        _write("Adwaita/index.theme", "[Icon Theme]\nDirectories=a\n[a]\nSize=48\nType=Scalable\n");
        QCOMPARE(_shown(iconSource("grey.png")), "48x48 #878787");
        const QByteArray svg
                = "<svg width='9' height='9'><circle cx='4' cy='4' r='4' fill='#ccc'/></svg>";
        _write("Adwaita/a/grey-symbolic.svg", svg);
        const QString wide = _write("a b%/#1?.png", "P3 2 1 1 1 0 0 1 0 0");
        const QString url = QUrl::fromLocalFile(wide).url(QUrl::FullyEncoded);
        const QString item = _dir.filePath("item");
        _write("item/flat.xpm", "P3 1 1 1 0 1 0");
        _write("item/hicolor/22x22/apps/themed.png", "P3 1 1 1 0 1 0");
        _write("item/hicolor/64x64/status/themed.png", "P3 1 1 1 0 0 1");
        QTRY_COMPARE(_shown(iconSource("grey.png"), { 96, 96 }), "96x96 #cccccc");
        QCOMPARE(_shown(iconSource("grey") + "?label=x&color=#ff0000"), "48x48 #ff0000");
        QCOMPARE(_shown(iconSource(wide) + "?color=#00ff00"), "48x24 #ff0000");
        QCOMPARE(_shown(iconSource(url), { 0, 50 }), "100x50 #ff0000");
        QCOMPARE(_shown("image://quorvane/icon/" + item + "/flat", {}), "1x1 #00ff00");
        QCOMPARE(_shown(iconSource("flat", item)), "48x48 #00ff00");
        QCOMPARE(_shown(iconSource("themed", item), { 20, 20 }), "20x20 #00ff00");
        QCOMPARE(_shown(iconSource("themed", item), { 32, 32 }), "32x32 #0000ff");
        QCOMPARE(_shown(ImageStore::add(QImage::fromData("P3 1 2 1 0 1 1 0 1 1"))),
                 "24x48 #00ffff");
    }

    void whatIsMissingOrHostileIsATile()
    {
        const QByteArray huge = "P4 8000 8000\n" + QByteArray(8000 * 1000, 0);
        mkfifo(qPrintable(_dir.filePath("fifo.png")), 0600);
        for (const QString &icon : { QString("missing"), QString("../a/grey-symbolic"), _dir.path(),
                                     _dir.filePath("fifo"), _write("cut.png", "\x89PNG\r\n\x1a\n"),
                                     _write("huge", huge) })
            QCOMPARE(icon + _shown(iconSource(icon)), icon + "48x48 #878787");
        QCOMPARE(_shown("image://quorvane/pixels/0?label=I"), "48x48 #ffffff");
    }

    // As it is for an asynchronous Image. The engine waits for that thread when it ends.
    void anotherThreadGetsThemToo()
    {
        const auto load = [&] { return _shown(iconSource("grey")); };
        auto shown = std::async(std::launch::async, load);
        QTRY_COMPARE(shown.wait_for(std::chrono::seconds(0)), std::future_status::ready);
        QCOMPARE(shown.get(), "48x48 #cccccc");
        shown = std::async(std::launch::async, load);
        _engine.reset();
        QCOMPARE(shown.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    }
};

QTEST_MAIN(IconProviderTest)
#include "tst_iconprovider.moc"
