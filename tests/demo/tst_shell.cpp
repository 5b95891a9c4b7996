#include "patience.h"

#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest>

#include <algorithm>
#include <cmath>

// What a pointer and a keyboard do to the demo shell; the walk through it has neither.
class ShellTest : public QObject
{
    Q_OBJECT

    static void _find(QQuickItem *item, const QByteArray &type, QList<QQuickItem *> &found)
    {
        if (QByteArray(item->metaObject()->className()).startsWith(type + "_QMLTYPE"))
            found += item;
        const QList<QQuickItem *> children = item->childItems();
        for (QQuickItem *child : children)
            _find(child, type, found);
    }
    QQuickItem *_pane(const QByteArray &type) const
    {
        QList<QQuickItem *> panes;
        _find(_window->contentItem(), type, panes);
        return panes.value(0);
    }
    // The cards in the pane of this type, from top to bottom.
    QList<QQuickItem *> _cards(const QByteArray &type) const
    {
        QList<QQuickItem *> cards;
        _find(_pane(type), "NotificationCard", cards);
        std::sort(cards.begin(), cards.end(),
                  [](auto *one, auto *other) { return one->y() < other->y(); });
        return cards;
    }
    QString _texts(const QByteArray &type) const
    {
        QStringList texts;
        const QList<QQuickItem *> cards = _cards(type);
        for (const QQuickItem *card : cards)
            texts += card->property("text").toString();
        return texts.join(' ');
    }
    static void _post(const QStringList &arguments)
    {
        QProcess poster;
        poster.start("notify-send", arguments);
        QTRY_VERIFY(poster.state() == QProcess::NotRunning);
    }
    static QPoint _middle(const QQuickItem *item)
    {
        return item->mapToScene(item->boundingRect().center()).toPoint();
    }
    void _drag(QPoint from, int distance)
    {
        QTest::mousePress(_window, Qt::LeftButton, {}, from);
        for (int part = 1; part <= 4; ++part)
            QTest::mouseMove(_window, from + QPoint(part * distance / 4, 0));
        QTest::mouseRelease(_window, Qt::LeftButton, {}, from + QPoint(distance, 0));
    }

    QQmlApplicationEngine _engine;
    QQuickWindow *_window = nullptr;

    // From 1, where both are the same, to 21, as in the Web Content Accessibility Guidelines.
    static double _contrast(QRgb one, QRgb other)
    {
        const auto luminance = [](QRgb color) {
            const auto linear = [](int part) { return std::pow(part / 255.0, 2.2); };
            return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color))
                   + 0.0722 * linear(qBlue(color)) + 0.05;
        };
        return qMax(luminance(one), luminance(other)) / qMin(luminance(one), luminance(other));
    }

private Q_SLOTS:
    void initTestCase()
    {
        _engine.addImportPath(IMPORT_PATH);
        _engine.setInitialProperties({ { "width", 840 } }); // Without the list of the centre.
        _engine.load(QUrl::fromLocalFile(SHELL "/Main.qml"));
        _window = qobject_cast<QQuickWindow *>(_engine.rootObjects().value(0));
        QVERIFY(QTest::qWaitForWindowExposed(_window));
        QTest::mouseMove(_window, { 1, 1 });
        _pane("PopupStack")->setProperty("lifetime", 2 * patience);
        for (const char *summary : { "One", "Two", "Three" })
            _post({ summary });
        QTRY_COMPARE(_texts("PopupStack"), "Three Two One");
    }

    void theWalkLeftPicturesThatCanBeRead_data()
    {
        QTest::addColumn<bool>("isDark");
        QTest::newRow("demo.png") << false;
        QTest::newRow("demo-dark.png") << true;
    }

    void theWalkLeftPicturesThatCanBeRead()
    {
        QFETCH(bool, isDark);
        const QImage picture(QDir(PICTURES).filePath(QTest::currentDataTag()));
        QHash<QRgb, int> pixels;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                ++pixels[picture.pixel(x, y)];
        QList<QRgb> colors = pixels.keys();
        std::sort(colors.begin(), colors.end(),
                  [&pixels](QRgb one, QRgb other) { return pixels[one] > pixels[other]; });
        QVERIFY(colors.size() > 20);
        QCOMPARE(qGray(colors[0]) < 80, isDark); // The background, and behind it
        colors.erase(colors.begin() + 20, colors.end());
        QVERIFY(std::any_of(colors.begin(), colors.end(), [&colors](QRgb color) { // the texts.
            return _contrast(color, colors[0]) > 10;
        }));
    }

    void thePointerStopsTheTimeOfAllPopUps()
    {
        QQuickItem *stack = _pane("PopupStack");
        QTest::mouseMove(_window, _middle(_cards("PopupStack").value(1)));
        QTRY_VERIFY(stack->property("hovered").toBool());
        stack->setProperty("lifetime", 1);
        _post({ "-e", "Late" });
        const QObject *all = stack->property("notifications").value<QObject *>();
        QTRY_COMPARE(all->property("count"), 4);
        QCoreApplication::processEvents();
        QCOMPARE(_texts("PopupStack"), "Three Two One");
        QTest::mouseMove(_window, { 1, 1 });
        QTRY_COMPARE(_texts("PopupStack"), "Three Two");
        _window->setWidth(1200);
        QTRY_COMPARE(_texts("NotificationCentre"), "Three Two One");
    }

    void aMiddleClickOrASwipeDismisses()
    {
        _drag(_middle(_cards("NotificationCentre").value(0)), 40);
        QTest::mouseClick(_window, Qt::MiddleButton, {},
                          _middle(_cards("NotificationCentre").value(1)));
        QTRY_COMPARE(_texts("NotificationCentre"), "Three One");
        _drag(_middle(_cards("NotificationCentre").value(0)), 160);
        QTRY_COMPARE(_texts("NotificationCentre"), "One");
    }

    void threeOfAProgramAreListedWhateverItsName()
    {
        for (const char *summary : { "1", "2", "3", "4", "5" })
            _post({ "-a", "__proto__", summary });
        QTRY_COMPARE(_texts("NotificationCentre"), "5 4 3 One");
        QCOMPARE(_cards("NotificationCentre").value(2)->property("folded"), 2);
        QVERIFY(_engine.evaluate("for (const name in {}) name").isUndefined());
        QTest::mouseClick(_window, Qt::MiddleButton, {},
                          _middle(_cards("NotificationCentre").value(0)));
        QTRY_COMPARE(_texts("NotificationCentre"), "4 3 2 One");
    }

    void theKeyboardPassesOverWhatCannotBeChosen()
    {
        const QVariant rows = QVariantList { QVariantMap { { "separator", true } },
                                             QVariantMap { { "label", "first" } },
                                             QVariantMap { { "enabled", false } },
                                             QVariantMap { { "visible", false } },
                                             QVariantMap { { "label", "last" } } };
        auto *menu = _pane("Launcher")->property("menu").value<QObject *>();
        QMetaObject::invokeMethod(menu, "show",
                                  Q_ARG(QVariant, QVariant::fromValue(_pane("Launcher"))),
                                  Q_ARG(QVariant, 0), Q_ARG(QVariant, 0), Q_ARG(QVariant, rows));
        auto *list = menu->property("list").value<QObject *>();
        for (const int row : { 1, 4, 1 }) {
            QTest::keyClick(_window, Qt::Key_Down);
            QCOMPARE(list->property("currentIndex"), row);
        }
        QTest::keyClick(_window, Qt::Key_Escape);
        QTRY_VERIFY(!menu->property("visible").toBool());
    }

    void escapeClearsTheSearch()
    {
        auto *applications = _pane("Launcher")->property("applications").value<QObject *>();
        _pane("Launcher")->forceActiveFocus();
        QTest::keyClick(_window, Qt::Key_A);
        QCOMPARE(applications->property("search"), "a");
        QMetaObject::invokeMethod(applications, "launch", Q_ARG(QString, "none"),
                                  Q_ARG(QList<QUrl>, {}));
        QTest::keyClick(_window, Qt::Key_Escape);
        QCOMPARE(applications->property("search"), "");
    }
};

QTEST_MAIN(ShellTest)
#include "tst_shell.moc"
