#include "desktopfixture.h"

#include <QQmlComponent>
#include <QQmlEngine>

#include <memory>

// The applications, used from QML.
class LauncherTest : public QObject
{
    Q_OBJECT

    const DesktopFixture _fixture;

private Q_SLOTS:
    void theExampleLaunchesTheBestMatch()
    {
        for (const QString &name : { QString("UXTerm"), QString("XTerm") }) {
            _fixture.app(name, { "Type=Application", "Name=" + name,
                                 "Exec=" + _fixture.childCommand("started", "%c") });
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
        QCOMPARE(_fixture.report("started"), QStringList { "XTerm" });
    }

    void filesAreOpenedAndWhatIsUsedComesFirst()
    {
        qputenv("XDG_STATE_HOME", _fixture.path("state").toLocal8Bit());
        _fixture.app("b", { "Type=Application", "Name=b", "MimeType=x-scheme-handler/demo;",
                            "Exec=" + _fixture.childCommand("started", "%u") });
        QQmlEngine engine;
        engine.addImportPath(IMPORT_PATH);
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\nimport Quorvane 1.1\n"
                          "Applications { order: Applications.ByUse; property string text\n"
                          "Component.onCompleted: { open('demo:1'); forgetUse('XTerm');"
                          "text = handlers('demo:') + get(0).appId } }",
                          {});
        const std::unique_ptr<QObject> model(component.create());
        QVERIFY2(model, qPrintable(component.errorString()));
        QCOMPARE(model->property("text").toString(), "bb");
        QCOMPARE(_fixture.report("started"), QStringList { "demo:1" });
    }
};

QTEST_MAIN(LauncherTest)
#include "tst_launcher.moc"
