#include "desktopfixture.h"

#include <QQmlComponent>
#include <QQmlEngine>

#include <memory>

// The applications, used from QML.
class LauncherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theExampleLaunchesTheBestMatch()
    {
        const DesktopFixture fixture;
        for (const QString &name : { QString("UXTerm"), QString("XTerm") }) {
            fixture.app(name, { "Type=Application", "Name=" + name,
                                "Exec=" + fixture.childCommand("started", "%c") });
        }
        QQmlEngine engine;
        engine.addImportPath(IMPORT_PATH);
        QQmlComponent component(&engine, QUrl::fromLocalFile(EXAMPLES "/launcher.qml"));
        const std::unique_ptr<QObject> window(component.create());
        QVERIFY2(window, qPrintable(component.errorString()));
        const auto children = window->findChildren<QObject *>();
        for (QObject *child : children) {
            if (child->inherits("QQuickTextInput") && child->setProperty("text", "xterm"))
                QMetaObject::invokeMethod(child, "accepted");
        }
        QCOMPARE(fixture.report("started"), QStringList { "XTerm" });
    }
};

QTEST_MAIN(LauncherTest)
#include "tst_launcher.moc"
