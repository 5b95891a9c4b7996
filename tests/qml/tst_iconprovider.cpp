#include "iconprovider.h"

#include <quorvaneshell/pictures/iconsource_p.h>
#include <quorvaneshell/pictures/imagestore_p.h>
#include <quorvaneshell/pictures/picturereader_p.h>

#include <QIcon>
#include <QtTest>

#include <sys/stat.h>

#include <memory>

using namespace quorvane;

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
    static QByteArray _picture(QColor color, QSize size = { 1, 1 }, const char *format = "png")
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        QByteArray data;
        QBuffer buffer(&data);
        image.save(&buffer, format);
        return data;
    }
    static QByteArray _svg(const QByteArray &content)
    {
        return "<?xml version='1.0'?>\n<!DOCTYPE svg [<!ENTITY red 'x'><!ENTITY blue "
               "\"fill:#00f\">]>"
               "<svg width='9' height='9'>"
               + content + "</svg>";
    }
    // A chunk of a PNG; nobody looks at the checksum of one that is left out.
    static QByteArray _chunk(const char *type, const QByteArray &content)
    {
        QByteArray size(4, 0);
        qToBigEndian(int(content.size()), size.data());
        return size + type + content + "sum.";
    }
    static QString _told(const QImage &image)
    {
        if (image.isNull())
            return "refused";
        const QColor color = image.pixelColor(image.rect().center());
        const QString name = color.alpha() > 0 ? color.name() : "empty";
        return QString("%1x%2 %3").arg(image.width()).arg(image.height()).arg(name);
    }
    // Size and colour of what the id gives that Qt Quick makes of the URL.
    QString _shown(const QString &source, const QSize &requested = { 48, 48 })
    {
        const QString id = QUrl(source).toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).mid(1);
        const std::unique_ptr<QQuickImageResponse> response(
                _provider.requestImageResponse(id, requested));
        QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
        if (!finished.wait(20000))
            return "nothing";
        const std::unique_ptr<QQuickTextureFactory> texture(response->textureFactory());
        return _told(texture->image());
    }

    QTemporaryDir _dir;
    IconProvider _provider;

private Q_SLOTS:
    void picturesHaveTheSizeThatIsAskedFor()
    {
        QIcon::setThemeSearchPaths({ _dir.path() });
        QIcon::setThemeName("test");
        _write("test/index.theme", "[Icon "
                                   "Theme]\nDirectories=a,b\nInherits=parent\n[a]\nSize=48\nType="
                                   "Scalable\n[b]\nSize=16\n");
        _write("parent/index.theme", "[Icon Theme]\nDirectories=p\n[p]\nSize=22\nScale=2\n");
        QCOMPARE(_shown(iconSource("grey.png")), "48x48 #878787");
        _write("test/a/grey-symbolic.svg", _svg("<circle cx='4' cy='4' r='4' fill='#ccc'/>"));
        _write("test/a/two.png", _picture(Qt::red));
        _write("test/b/two.png", _picture(Qt::green));
        _write("parent/p/of-parent.xpm", _picture(Qt::blue, { 1, 1 }, "xpm"));
        const QString wide = _write("a b%/#1?.png", _picture(Qt::red, { 2, 1 }));
        const QString url = QUrl::fromLocalFile(wide).url(QUrl::FullyEncoded);
        const QString item = _dir.filePath("item");
        _write("item/flat.xpm", _picture(Qt::green));
        _write("item/hicolor/22x22/apps/themed.png", _picture(Qt::green));
        _write("item/hicolor/64x64/status/themed.png", _picture(Qt::blue));
        // A new icon is seen within a second.
        QTRY_COMPARE(_shown(iconSource("grey.png"), { 96, 96 }), "96x96 #cccccc");
        QCOMPARE(_shown(iconSource("grey") + "?label=x&color=#ff0000"), "48x48 #ff0000");
        QCOMPARE(_shown(iconSource("two"), { 17, 17 }), "17x17 #00ff00");
        QCOMPARE(_shown(iconSource("two")), "48x48 #ff0000");
        QCOMPARE(_shown(iconSource("of-parent-x"), { 44, 44 }), "44x44 #0000ff");
        QCOMPARE(_shown(iconSource(wide) + "?color=#00ff00"), "48x24 #ff0000");
        QCOMPARE(_shown("image://quorvane/icon/" + QUrl::toPercentEncoding(wide, "/?")),
                 "48x24 #ff0000");
        QCOMPARE(_shown(iconSource(url), { 0, 50 }), "100x50 #ff0000");
        QCOMPARE(_shown("image://quorvane/icon/" + item + "/flat", {}), "1x1 #00ff00");
        QCOMPARE(_shown(iconSource("flat", item)), "48x48 #00ff00");
        QCOMPARE(_shown(iconSource("themed", item), { 20, 20 }), "20x20 #00ff00");
        QCOMPARE(_shown(iconSource("themed", item), { 32, 32 }), "32x32 #0000ff");

        QImage tall(1, 2, QImage::Format_RGB32);
        tall.fill(Qt::cyan);
        const QString pixels = ImageStore::add(tall);
        QCOMPARE(_shown(pixels), "24x48 #00ffff");
        QCOMPARE(_shown(iconSource("missing", item, pixels)), "24x48 #00ffff");
        QCOMPARE(_shown(iconSource("themed", item, pixels, "1"), { 32, 32 }), "32x32 #0000ff");
        QCOMPARE(_shown(iconSource("two", {}, pixels, "a/b") + "?label=x"), "48x48 #ff0000");
        QVERIFY(iconSource("two", {}, {}, "1") != iconSource("two", {}, {}, "2"));
    }

    void picturesOfStrangersCostLittle_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("told");
        const QByteArray png = _picture(Qt::red);
        const QString shown = "32x32 #ff0000";
        const QString refused = "refused";
        const QByteArray text
                = _chunk("zTXt", QByteArray("k\0\0", 3) + qCompress(QByteArray(9999, 'a')).mid(4));
        QTest::newRow("packed text") << QByteArray(png).insert(33, text) << shown;
        QTest::newRow("900 million pixels")
                << QByteArray(png).replace(16, 8, QByteArray("\0\0\x75\x30\0\0\x75\x30", 8))
                << refused;
        QTest::newRow("JPEG") << _picture(Qt::black, { 9, 9 }, "jpeg") << "32x32 #000000";
        QTest::newRow("other formats") << _picture(Qt::red, { 9, 9 }, "bmp") << refused;
        const QByteArray rect = "<rect width='9' height='9' fill='#f00'/>";
        QTest::newRow("packed SVG") << QByteArray::fromHex("1f8b0800") + _svg(rect) << refused;
        QTest::newRow("large SVG") << _svg(rect + QByteArray(1 << 20, ' ')) << refused;
        QTest::newRow("style sheet, comment, CDATA")
                << _svg("<style>/* .a */<![CDATA[.a{fill:#000} rect.a{fill:#f00}]]></style>"
                        "<!-- <path --><rect class='b a' width='9' height='9' fill='#0f0'/>")
                << shown;
        QTest::newRow("entity") << _svg("<rect width='9' height='9' style='&blue;'/>")
                                << "32x32 #0000ff";
        QTest::newRow("outer file") << _svg("<image width='9' height='9' xlink:href='file://"
                                            + _dir.path().toUtf8() + "/fifo.svg'/>" + rect)
                                    << shown;
        QTest::newRow("picture inside") << _svg(
                "<image width='9' height='9' href='data:image/png;base64," + png.toBase64() + "'/>")
                                        << shown;
        QTest::newRow("uses itself") << _svg("<g id='a'><use href='#a'/></g>") << refused;
        QByteArray uses;
        for (char c = 'b'; c < 'k'; ++c)
            uses += QByteArray("<g id='c'>").replace('c', c)
                    + QByteArray("<use href='#c'/>").replace('c', char(c - 1)).repeated(10)
                    + "</g>";
        QTest::newRow("references of references")
                << _svg("<g id='a'>" + rect + "</g>" + uses) << refused;
        QTest::newRow("deep") << _svg(QByteArray("<g>").repeated(99999)) << refused;
        QByteArray attributes;
        for (int i = 0; i < 99999; ++i)
            attributes += " a" + QByteArray::number(i) + "=''";
        QTest::newRow("attributes") << _svg("<rect" + attributes + "/>") << refused;
        QTest::newRow("far away") << _svg(
                "<g transform='scale(999999)'><path d='M1 1L9999 9'/></g>")
                                  << refused;
        // Costs so much that it is drawn small, and made larger.
        QTest::newRow("many lines") << _svg("<path fill='#f00' d='M0 0H9V9H0z"
                                            + QByteArray("L9 9L0 0").repeated(10000) + "'/>")
                                    << shown;
    }

    void picturesOfStrangersCostLittle()
    {
        QFETCH(QByteArray, data);
        mkfifo(qPrintable(_dir.filePath("fifo.svg")), 0600);
        QImage image = readPicture(data, { 32, 32 });
        QVERIFY(image.textKeys().isEmpty());
        QTEST(_told(image), "told");
    }

    void whatIsMissingOrHostileIsATile()
    {
        for (const char *fifo : { "fifo.png", "test/a/pipe.png" })
            mkfifo(qPrintable(_dir.filePath(fifo)), 0600);
        for (const QString &icon :
             { QString("missing"), QString("../a/grey-symbolic"), _dir.path(), QString("pipe"),
               _dir.filePath("fifo"), _write("cut.png", "\x89PNG\r\n\x1a\n"), QString("t%77o"),
               QString(QChar(0)), "/" + QString(QChar(0)), _write("other.png", "P3 1 1 1 1 1 1") })
            QCOMPARE(icon + _shown(iconSource(icon)), icon + "48x48 #878787");
        QCOMPARE(_shown("image://quorvane/pixels/0?label=I"), "48x48 #ffffff");
        QCOMPARE(_shown(iconSource("missing") + "?label=I?missing=empty"), "48x48 empty");
    }
};

QTEST_MAIN(IconProviderTest)
#include "tst_iconprovider.moc"
