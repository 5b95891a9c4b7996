#include "environment.h"

#include <quorvane/notifications/notificationmanager.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

// Drives each type of the module from QML.
class QmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void baseDirectoriesAreReadAtEachAccess();
    void anEntryRunsItsProgram();
    void theFilterNarrowsTheEntries();
    void aSearchNeedsNothingButTheProxy();
    void autostartStartsByKeyAndValue();
    void actionsAreRows();
    void aPeerIsAnsweredThroughTheManager();
    void aViewBehindTheProxyKeepsItsCount();
    void theTrayClicksItsItem();
    void theExamplesLoad_data();
    void theExamplesLoad();

private:
    using Object = std::unique_ptr<QObject>;

    Object _create(const QByteArray &body);
    void _write(const QString &path, const QByteArray &text);

    QTemporaryDir _dir;
    Environment _environment;
    QQmlEngine _engine;
};

namespace {

QVariant run(const std::unique_ptr<QObject> &object, const char *function = "run")
{
    QVariant result;
    QMetaObject::invokeMethod(object.get(), function, Q_RETURN_ARG(QVariant, result));
    return result;
}

int peer(const QString &file)
{
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral(IMPORT_PATH));
    QObject::connect(&engine, &QQmlEngine::quit, qApp, &QCoreApplication::quit);
    QQmlComponent component(&engine, QUrl::fromLocalFile(file));
    const std::unique_ptr<QObject> object(component.create());
    return object ? QCoreApplication::exec() : 1;
}

} // namespace

QmlTest::Object QmlTest::_create(const QByteArray &body)
{
    QQmlComponent component(&_engine);
    component.setData("import QtQuick 2.15\nimport Quorvane 1.1\n" + body, QUrl());
    Object object(component.create());
    if (!object)
        qWarning() << component.errorString();
    return object;
}

void QmlTest::_write(const QString &path, const QByteArray &text)
{
    QFile file(_dir.filePath(path));
    QDir().mkpath(QFileInfo(file).path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void QmlTest::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("xdg.system_tray.debug=true"));
    _engine.addImportPath(QStringLiteral(IMPORT_PATH));
    _environment.set("XDG_DATA_HOME", QFile::encodeName(_dir.filePath("home")));
    _environment.set("XDG_DATA_DIRS", QFile::encodeName(_dir.filePath("share")));
    _environment.set("XDG_CONFIG_HOME", QFile::encodeName(_dir.filePath("config")));
    _environment.set("XDG_CONFIG_DIRS", QFile::encodeName(_dir.filePath("etc")));
    _write("share/applications/clock.desktop",
           "[Desktop Entry]\nName=Clock\nExec=sleep 60\nCategories=Utility\n");
    _write("share/applications/paint.desktop",
           "[Desktop Entry]\nName=Paint\nExec=sleep 60\nCategories=Graphics\n");
    _write("config/autostart/touch.desktop", "[Desktop Entry]\nName=Touch\nExec=touch "
                                                     + QFile::encodeName(_dir.filePath("touched")));
}

void QmlTest::baseDirectoriesAreReadAtEachAccess()
{
    const Object object
            = _create("QtObject { function run() { return BaseDirectories.dataDirs } }");
    QCOMPARE(run(object).toStringList(), { _dir.filePath("share") });
    Environment environment;
    environment.set("XDG_DATA_DIRS", "/a:/b");
    QCOMPARE(run(object).toStringList(), (QStringList { "/a", "/b" }));
}

void QmlTest::anEntryRunsItsProgram()
{
    const Object object = _create(R"(Entry {
        property int raised
        appId: 'clock'
        onRaiseProcess: raised = pid
        function run() { return data('Desktop Entry/Keywords') }
    })");
    const auto start = [&object] {
        QMetaObject::invokeMethod(object.get(), "start", Q_ARG(QStringList, {}));
    };
    start();
    QTRY_COMPARE(run(object).toString(), " running");
    start();
    QVERIFY(object->property("raised").toInt() > 0);
    QMetaObject::invokeMethod(object.get(), "stop", Q_ARG(QStringList, {}));
    QTRY_COMPARE(run(object).toString(), " stopped");
}

void QmlTest::theFilterNarrowsTheEntries()
{
    const Object object = _create(R"(DesktopFilter {
        property DesktopEntries entries: DesktopEntries { }
        model: entries
        category: 'Graphics'
        function run() { return [entries.categories.join(), rowCount(), data(index(0, 0), 265)].join('|') }
    })");
    QCOMPARE(run(object).toString(), "Utility,Graphics|1|paint");
}

void QmlTest::aSearchNeedsNothingButTheProxy()
{
    const Object object = _create(R"(SortFilterProxyModel {
        property string text: 'CLO'
        sourceModel: DesktopEntries { }
        filterRole: Qt.UserRole + 2
        filterRegularExpression: new RegExp(text, 'i')
        function run() { return rowCount() + data(index(0, 0), filterRole) }
    })");
    QCOMPARE(run(object).toString(), "1Clock");
    object->setProperty("text", "");
    QCOMPARE(run(object).toString(), "2Clock");
}

void QmlTest::autostartStartsByKeyAndValue()
{
    const Object object
            = _create("AutoStart { function run() { start('Desktop Entry/Name', 'touch') } }");
    run(object);
    QTRY_VERIFY(QFile::exists(_dir.filePath("touched")));
}

void QmlTest::actionsAreRows()
{
    const Object object = _create(R"(NotificationActions {
        actionslist: ['a', 'Answer', 'l', 'Later']
        function run() { return rowCount() + data(index(1, 0), 257) + data(index(1, 0), 258) }
    })");
    QCOMPARE(run(object).toString(), "2lLater");
}

void QmlTest::aPeerIsAnsweredThroughTheManager()
{
    const Object object = _create(R"(NotificationManager {
        function run() { return data(index(0, 0), 259) }
        function answer() { returnAction(data(index(0, 0), 263), data(index(0, 0), 261)[0]) }
    })");
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationFilePath(), { QStringLiteral(PEER) });
    QTRY_COMPARE_WITH_TIMEOUT(object->property("nbNotifications").toInt(), 1, 20000);
    QCOMPARE(run(object).toString(), "Tea");
    run(object, "answer");
    QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 20000);
    QVERIFY(process.readAll().contains("drink The notification was dismissed by the user."));
    QCOMPARE(object->property("nbNotifications").toInt(), 0);
}

void QmlTest::aViewBehindTheProxyKeepsItsCount()
{
    const Object object = _create(R"(ListView {
        property NotificationManager manager: NotificationManager { }
        model: SortFilterProxyModel { sourceModel: manager }
        height: 100
        delegate: Text { height: 10; text: model.summary }
        function run() { manager.close(4711); forceLayout(); return count + itemAtIndex(0).text }
    })");
    for (const char *summary : { "First", "Second", "Third" }) {
        xdg::serverNotify(object->property("manager").value<QObject *>(), {}, 0, {},
                          QString::fromLatin1(summary), {}, {}, {}, 0);
    }
    QCOMPARE(run(object).toString(), "3Third");
}

void QmlTest::theTrayClicksItsItem()
{
    const Object object = _create(R"(QtObject {
        id: tray
        property StatusNotifierWatcher watcher: StatusNotifierWatcher { }
        property StatusNotifierHost host
        property StatusNotifierItem item
        property Component hosts: Component { StatusNotifierHost { } }
        property Component items: Component {
            StatusNotifierItem {
                title: 'Kettle'
                onActivated: clicks.push(x + ',' + y)
                onSecondaryActivated: clicks.push('second')
            }
        }
        property var clicks: []
        Component.onCompleted: { host = hosts.createObject(tray); item = items.createObject(tray) }
        function title() { return host.data(host.index(0, 0), 259) }
        function click() { host.activate(3, 4, item.idItem, 0); host.activate(5, 6, item.idItem, 1) }
        function run() { return watcher.ProtocolVersion + ' ' + clicks.join(' ') }
    })");
    QTRY_COMPARE(run(object, "title").toString(), "Kettle");
    QMetaObject::invokeMethod(object.get(), "click");
    QTRY_COMPARE(run(object).toString(), "1 3,4 second");
}

void QmlTest::theExamplesLoad_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : { "first.qml", "pending.qml", "search.qml" })
        QTest::newRow(name) << QString::fromLatin1(name);
}

void QmlTest::theExamplesLoad()
{
    QFETCH(QString, name);
    QQmlComponent component(&_engine, QUrl::fromLocalFile(QStringLiteral(EXAMPLES "/") + name));
    const Object object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
}

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("tst_qml"));
    if (argc > 1 && QByteArray(argv[1]).endsWith(".qml"))
        return peer(QString::fromLocal8Bit(argv[1]));
    QmlTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_qml.moc"
