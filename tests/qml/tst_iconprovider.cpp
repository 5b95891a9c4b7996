#include <iconprovider.h>
#include <iconsource.h>
#include <imagestore.h>

#include <QIcon>
#include <QPainter>
#include <QQmlEngine>
#include <QThread>
#include <QtTest>

#include <sys/stat.h>

#include <memory>

// Pictures of names, files and pixels, as an Image asks for them.
class IconProviderTest : public QObject
{
    Q_OBJECT

    QString _write(const QString &name, const QByteArray &content)
    {
        const QString path = _dir.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("Can't write %s", qPrintable(path));
        return path;
    }
    static QByteArray _png(int width, int height, QColor color)
    {
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter(&image).fillRect(1, 1, width - 2, height - 2, color);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "PNG");
        return bytes;
    }
    // What Qt Quick makes of the URL, and the answer.
    QImage _picture(const QString &source, const QSize &requested = { 48, 48 })
    {
        const QString id = QUrl(source).toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).mid(1);
        return _provider->requestImage(id, &_size, requested);
    }
    static bool _isTile(const QImage &image)
    {
        return image.size() == QSize(48, 48) && image.pixelColor(24, 40).alpha() == 96;
    }

    const QByteArray _svg = "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'>"
                            "<circle cx='5' cy='5' r='4' fill='#bebebe'/></svg>";
    QTemporaryDir _dir;
    std::unique_ptr<QQmlEngine> _engine = std::make_unique<QQmlEngine>();
    std::unique_ptr<IconProvider> _provider = std::make_unique<IconProvider>(_engine.get());
    QSize _size;

private Q_SLOTS:
    void initTestCase()
    {
        _write("icons/Adwaita/index.theme", "[Icon Theme]\nDirectories=24x24/apps,scalable/apps\n"
                                            "[24x24/apps]\nSize=24\n[scalable/apps]\nSize=64\n"
                                            "Type=Scalable\nMinSize=8\nMaxSize=512\n");
        _write("icons/Adwaita/24x24/apps/small.png", _png(24, 24, Qt::red));
        _write("icons/Adwaita/scalable/apps/vector.svg", _svg);
        _write("icons/Adwaita/scalable/apps/mute-symbolic.svg", _svg);
        _write("a b%/#1?.png", _png(200, 100, Qt::red));
        _write("item/hicolor/22x22/apps/small.png", _png(22, 22, Qt::green));
        _write("item/hicolor/64x64/status/small.png", _png(64, 64, Qt::blue));
        _write("item/flat.png", _png(16, 16, Qt::green));
        QIcon::setThemeSearchPaths({ _dir.filePath("icons") });
    }

    void picturesHaveTheSizeThatIsAskedFor_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QSize>("requested");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QColor>("color");
        const QString wide = _dir.filePath("a b%/#1?.png");
        const QString item = _dir.filePath("item");
        const QSize twice(96, 96);
        QTest::newRow("of a theme")
                << iconSource("small") << QSize(24, 24) << QSize(24, 24) << QColor(Qt::red);
        QTest::newRow("scaled up") << iconSource("small.png") << twice << twice << QColor(Qt::red);
        QTest::newRow("drawn") << iconSource("vector") << twice << twice << QColor("#bebebe");
        QTest::newRow("symbolic only")
                << iconSource("mute") + "?color=#ff0000" << twice << twice << QColor(Qt::red);
        QTest::newRow("grey in the colour") << iconSource("vector") + "?label=x&color=#ff0000"
                                            << twice << twice << QColor(Qt::red);
        QTest::newRow("coloured ones stay")
                << iconSource("small") + "?color=#0000ff" << twice << twice << QColor(Qt::red);
        QTest::newRow("a path") << iconSource(wide) << twice << QSize(96, 48) << QColor(Qt::red);
        QTest::newRow("one side") << iconSource(wide) << QSize(0, 50) << QSize(100, 50)
                                  << QColor(Qt::red);
        QTest::newRow("own size") << iconSource(wide) << QSize() << QSize(200, 100)
                                  << QColor(Qt::red);
        QTest::newRow("a file URL")
                << iconSource(QUrl::fromLocalFile(wide).toString(QUrl::FullyEncoded)) << twice
                << QSize(96, 48) << QColor(Qt::red);
        QTest::newRow("a path by hand")
                << "image://quorvane/icon/" + item + "/flat" << twice << twice << QColor(Qt::green);
        QTest::newRow("a folder's best")
                << iconSource("small", item) << QSize(32, 32) << QSize(32, 32) << QColor(Qt::blue);
        QTest::newRow("a folder's small one")
                << iconSource("small", item) << QSize(20, 20) << QSize(20, 20) << QColor(Qt::green);
        QTest::newRow("a flat folder")
                << iconSource("flat", item) << twice << twice << QColor(Qt::green);
        QTest::newRow("else of the theme")
                << iconSource("vector", item) << twice << twice << QColor("#bebebe");
    }
    void picturesHaveTheSizeThatIsAskedFor()
    {
        QFETCH(QString, source);
        QFETCH(QSize, requested);
        const QImage image = _picture(source, requested);
        QTEST(image.size(), "size");
        QTEST(image.pixelColor(image.rect().center()), "color");
    }

    void whatIsMissingOrHostileIsATile_data()
    {
        QTest::addColumn<QString>("icon");
        const QByteArray png = _png(300, 300, Qt::red);
        QByteArray huge = png;
        // The header with its checksum.
        huge.replace(16, 17, QByteArray::fromHex("000075300000753008060000006627f8ba"));
        mkfifo(qPrintable(_dir.filePath("fifo.png")), 0600);
        QTest::newRow("unknown") << "no such icon";
        QTest::newRow("way out of the theme") << "../../../../item/flat";
        QTest::newRow("remote") << "http://localhost/icon.png";
        QTest::newRow("pipe") << _dir.filePath("fifo");
        QTest::newRow("device") << "/dev/zero";
        QTest::newRow("folder") << _dir.path();
        QTest::newRow("cut off") << _write("cut.png", png.left(60));
        QTest::newRow("huge") << _write("huge.png", huge);
        QTest::newRow("no picture") << _write("text.png", "text");
    }
    void whatIsMissingOrHostileIsATile()
    {
        QFETCH(QString, icon);
        QVERIFY(_isTile(_picture(iconSource(icon))));
        QVERIFY(!_isTile(_picture(iconSource(icon) + "?label=Letter")));
    }

    void pixelsAreThoseOfTheStore()
    {
        QImage image(30, 60, QImage::Format_RGB888);
        image.fill(Qt::cyan);
        const QString source = ImageStore::add(image);
        QCOMPARE(_picture(source).size(), QSize(24, 48));
        QCOMPARE(_size, QSize(30, 60));
        ImageStore::remove(source);
        QVERIFY(_isTile(_picture(source)));
    }

    // As it is for an asynchronous Image.
    void anotherThreadGetsThemToo()
    {
        QImage image;
        const auto load = [&] { image = _picture(iconSource("vector")); };
        std::unique_ptr<QThread> thread(QThread::create(load));
        thread->start();
        QTRY_VERIFY(thread->isFinished());
        QCOMPARE(image.pixelColor(24, 24), QColor("#bebebe"));

        thread.reset(QThread::create(load));
        thread->start();
        _engine.reset(); // Waits for its threads, and the events of this one with it.
        QVERIFY(thread->wait(20000));
    }
};

QTEST_MAIN(IconProviderTest)
#include "tst_iconprovider.moc"
