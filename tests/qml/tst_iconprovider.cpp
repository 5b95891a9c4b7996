#include <QQmlComponent>
#include <QQmlEngine>
#include <QtTest>

#include <memory>

// What an Image shows of image://quorvane.
class IconProviderTest : public QObject
{
    Q_OBJECT

    // The size in which the Image has it, which no tile has.
    QString _shown(const QString &url)
    {
        _image->setProperty("source", QUrl(url));
        const bool isReady
                = QTest::qWaitFor([this] { return _image->property("progress").toReal() == 1; });
        return isReady ? QString("%1x%2")
                                 .arg(_image->property("implicitWidth").toInt())
                                 .arg(_image->property("implicitHeight").toInt())
                       : "nothing";
    }

    QQmlEngine _engine;
    std::unique_ptr<QObject> _image;

private Q_SLOTS:
    void initTestCase()
    {
        _engine.addImportPath(IMPORT_PATH);
        QQmlComponent component(&_engine);
        component.setData("import QtQuick 2.15\nimport Quorvane 1.1\n"
                          "Image { sourceSize: Qt.size(48, 48); property var names: Tray {} }",
                          {});
        _image.reset(component.create());
        QVERIFY2(_image, qPrintable(component.errorString()));
    }

    void urlsAreReadAsQtQuickMakesThem()
    {
        const QTemporaryDir dir;
        QDir(dir.path()).mkdir("a b%");
        const QString wide = dir.filePath("a b%/#1?.png");
        QVERIFY(QImage(2, 1, QImage::Format_RGB32).save(wide, "png"));
        const QString start = "image://quorvane/icon/";
        QCOMPARE(_shown(start + QUrl::toPercentEncoding(wide)), "48x24");
        QCOMPARE(_shown(start), "48x48");
        QCOMPARE(_shown(start + QUrl::toPercentEncoding(wide, "/?") + "?label=a?color=red"),
                 "48x24");
        QCOMPARE(_shown(start + "missing?label=%3F"), "48x48");
        const auto twice = [](const QString &text) {
            return QUrl::toPercentEncoding(QUrl::toPercentEncoding(text));
        };
        const QFileInfo file(wide);
        QCOMPARE(_shown("image://quorvane/themed/" + twice(file.completeBaseName()) + "/"
                        + twice(file.path()) + "/-/1"),
                 "48x24");
    }

    void anotherPictureTakesThePlaceOfOneOnItsWay()
    {
        for (int i = 0; i < 100; ++i)
            _image->setProperty("source", QUrl(QString("image://quorvane/icon/none%1").arg(i)));
        QCOMPARE(_shown("image://quorvane/pixels/0"), "48x48");
    }
};

QTEST_MAIN(IconProviderTest)
#include "tst_iconprovider.moc"
