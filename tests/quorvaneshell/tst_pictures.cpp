#include <quorvaneshell/pictures/icon.h>
#include <quorvaneshell/pictures/iconsource_p.h>
#include <quorvaneshell/pictures/imagestore_p.h>
#include <quorvaneshell/pictures/picturereader_p.h>
#include <quorvaneshell/rows/listmodel.h>

#include <QPainter>
#include <QtTest>

#include <sys/stat.h>

#include <memory>

using namespace quorvane;

// Pictures of names, files and pixels, read and painted.
class PicturesTest : public QObject
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
    // Size and colour of what the source gives.
    static QString _shown(const QString &source, const QSize &size = { 48, 48 })
    {
        QString told;
        QObject context;
        readIcon(source, size, &context, [&](const QImage &image) { told = _told(image); });
        return QTest::qWaitFor([&] { return !told.isEmpty(); }, 20000) ? told : "nothing";
    }
    // The same of the icon as it is painted in a room of 20 by 10, and where its edges are.
    static QString _painted(const QIcon &icon, qreal ratio = 1)
    {
        QImage canvas((QSizeF(40, 30) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        canvas.setDevicePixelRatio(ratio);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        icon.paint(&painter, 10, 10, 20, 10);
        painter.end();
        QRect seen;
        for (int y = 0; y < canvas.height(); ++y) {
            for (int x = 0; x < canvas.width(); ++x) {
                if (canvas.pixelColor(x, y).alpha() > 0)
                    seen |= QRect(x, y, 1, 1);
            }
        }
        return QString("%1,%2 ").arg(seen.x()).arg(seen.y()) + _told(canvas.copy(seen));
    }

    QTemporaryDir _dir;

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
        for (const QString &source : { iconSource(url), url, wide })
            QCOMPARE(_shown(source, { 0, 50 }), "100x50 #ff0000");
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
        QTest::newRow("unknown paint")
                << _svg("<rect width='9' height='9' fill='url(#none) #f00' stroke='url(#none)'/>")
                << shown;
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

    void iconsArePaintedInThePixelsOfTheScreen()
    {
        const QIcon tall = icon(_write("tall.png", _picture(Qt::red, { 30, 60 })));
        QTRY_COMPARE(_painted(tall), "17,10 5x10 #ff0000");
        QTRY_COMPARE(_painted(tall, 1.5), "26,15 7x15 #ff0000");
        QTRY_COMPARE(_painted(tall, 2), "35,20 10x20 #ff0000");
        // Qt multiplies by the ratio of the application, which is that of the run of this test; Qt 5
        // if it is told so.
        const auto attributes = QMetaEnum::fromType<Qt::ApplicationAttribute>();
        qApp->setAttribute(Qt::ApplicationAttribute(attributes.keyToValue("AA_UseHighDpiPixmaps")));
        const qreal ratio = qApp->devicePixelRatio();
        QCOMPARE(QString::number(ratio), qEnvironmentVariable("QT_SCALE_FACTOR", "1"));
        const QSize pixels = (QSizeF(12, 24) * ratio).toSize();
        QTRY_COMPARE(tall.pixmap(24, 24).size(), pixels);
        QCOMPARE(tall.pixmap(24, 24).devicePixelRatio(), ratio);
        QCOMPARE(tall.actualSize({ 24, 24 }), QSize(24, 24));
        const QColor disabled = tall.pixmap(24, 24, QIcon::Disabled).toImage().pixelColor(1, 1);
        QVERIFY(disabled != QColor(Qt::red) && disabled.alpha() > 0);

        QVERIFY(icon({}).isNull() && !icon("missing").isNull());
        QCOMPARE(_painted(icon(iconSource("missing"))), "15,10 10x10 #878787");
        QVERIFY(!_painted(icon(iconSource("missing"), "I")).contains("#878787"));
        const QString grey = iconSource("grey") + "?color=#00ff00";
        QTRY_COMPARE(_painted(icon(grey)), "15,10 9x9 #00ff00");
        QTRY_COMPARE(_painted(icon(grey, {}, Qt::blue)), "15,10 9x9 #0000ff");
    }

    void paintedIconsFollowThemesAndReplacedPictures()
    {
        _write("other/index.theme", "[Icon Theme]\nDirectories=a\n[a]\nSize=48\n");
        _write("other/a/two.png", _picture(Qt::blue));
        const QIcon two = icon(iconSource("two"));
        QTRY_COMPARE(_painted(two), "15,10 10x10 #00ff00");
        const QString file = _dir.filePath("test/b/two.png");
        QVERIFY(QFile::rename(file, file + "-"));
        QCOMPARE(_painted(two), "15,10 10x10 #00ff00"); // Read once.
        QIcon::setThemeName("other");
        QTRY_COMPARE(_painted(two), "15,10 10x10 #0000ff");
        QIcon::setThemeName("test");
        QVERIFY(QFile::rename(file + "-", file));

        const QString item = _dir.filePath("stamped");
        _write("stamped/own.png", _picture(Qt::red));
        QTRY_COMPARE(_painted(icon(iconSource("own", item, {}, "1"))), "15,10 10x10 #ff0000");
        _write("stamped/own.png", _picture(Qt::green));
        QTRY_COMPARE(_painted(icon(iconSource("own", item, {}, "2"))), "15,10 10x10 #00ff00");
    }

    void whatTakesLongIsPaintedWhenItHasCome()
    {
        class Rows : public ListModel
        {
        public:
            int rowCount(const QModelIndex & = {}) const override { return 3; }
            QHash<int, QByteArray> roleNames() const override { return { { 0, "iconSource" } }; }
            QVariant data(const QModelIndex &index, int) const override
            {
                return index.row() == 1 ? source : QString();
            }
            QString source;
        } rows;
        // Too many pixels to be read in the time that painting waits.
        const QByteArray large = _picture(Qt::red, { 2900, 2900 });
        rows.source = _write("large.png", large);
        QSignalSpy changed(&rows, &ListModel::dataChanged);
        IconWatcher watcher;
        QSignalSpy read(&watcher, &IconWatcher::iconsRead);
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < 9; ++i)
            QCOMPARE(_painted(icon(_write(QString("%1.png").arg(i), large))).right(7), "#878787");
        QCOMPARE(_painted(icon(rows.source)), "15,10 10x10 #878787");
        QVERIFY(clock.elapsed() < 2000);
        QTRY_VERIFY_WITH_TIMEOUT(changed.count() == 1, 20000);
        QCOMPARE(changed.first().first().toModelIndex().row(), 1);
        QCOMPARE(changed.first().at(1).toModelIndex().row(), 1);
        QVERIFY(std::any_of(read.cbegin(), read.cend(), [&rows](const QVariantList &arguments) {
            return arguments.first().toStringList().contains(rows.source);
        }));
        QCOMPARE(_painted(icon(rows.source)), "15,10 10x10 #ff0000");
        // What was missing is looked for again, and told of, too.
        const QIcon late = icon(_dir.filePath("late.png"));
        QCOMPARE(_painted(late), "15,10 10x10 #878787");
        _write("late.png", _picture(Qt::blue));
        QTRY_COMPARE(_painted(late), "15,10 10x10 #0000ff");
    }

    void nobodyIsGivenAPictureThatHeDoesNotWaitFor()
    {
        bool isGiven = false;
        auto *context = new QObject;
        readIcon("two", { 9, 9 }, context, [&](const QImage &) { isGiven = true; });
        delete context;
        // Read one after the other.
        QCOMPARE(_shown("two", { 9, 9 }), "9x9 #00ff00");
        QCOMPARE(_shown("two", { 9, 9 }), "9x9 #00ff00");
        QVERIFY(!isGiven);
        // In a thread of its own.
        std::unique_ptr<QThread> thread(QThread::create([] {
            QEventLoop loop;
            readIcon("two", { 9, 9 }, &loop, [&](const QImage &image) {
                loop.exit(image.width() == 9 && QThread::currentThread() == loop.thread() ? 9 : 1);
            });
            QVERIFY(loop.exec() == 9);
        }));
        thread->start();
        QTRY_VERIFY(thread->isFinished());
    }
};

QTEST_MAIN(PicturesTest)
#include "tst_pictures.moc"
