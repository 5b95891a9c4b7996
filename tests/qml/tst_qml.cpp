#include <quorvane/desktop/entry.h>
#include <quorvane/notifications/notificationmanager.h>

#include "desktopfixture.h"

#include <QAbstractItemModelTester>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QStandardItemModel>

#include <memory>

// What the demo shell leaves out of the module, used from QML.
class QmlTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QObject> _create(const QByteArray &body)
    {
        QQmlComponent component(&_engine);
        component.setData("import QtQuick 2.15\nimport Quorvane 1.1\n" + body, QUrl());
        std::unique_ptr<QObject> object(component.create());
        if (!object)
            qFatal("%s", qPrintable(component.errorString()));
        return object;
    }
    static QString _run(const std::unique_ptr<QObject> &object, const char *function = "run")
    {
        QVariant result;
        QMetaObject::invokeMethod(object.get(), function, Q_RETURN_ARG(QVariant, result));
        return result.toString();
    }

    QQmlEngine _engine;

private Q_SLOTS:
    void initTestCase()
    {
        QLoggingCategory::setFilterRules("xdg.system_tray.debug=true");
        _engine.addImportPath(IMPORT_PATH);
    }

    void baseDirectoriesAreReadAtEachAccess()
    {
        const auto object = _create(R"(QtObject { function run() {
            const b = BaseDirectories;
            return [b.dataHome, b.configHome, b.cacheHome, b.stateHome, b.runtimeDir, b.dataDirs[1],
                    b.configDirs[1]].join();
        } })");
        for (const QByteArray &path : { QByteArray("/x"), QByteArray("/y") }) {
            for (const char *variable : { "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                                          "XDG_STATE_HOME", "XDG_RUNTIME_DIR" })
                qputenv(variable, path + variable);
            qputenv("XDG_DATA_DIRS", ':' + path + "DATA");
            qputenv("XDG_CONFIG_DIRS", ':' + path + "CONFIG");
            QCOMPARE(_run(object), QString("?XDG_DATA_HOME,?XDG_CONFIG_HOME,?XDG_CACHE_HOME,"
                                           "?XDG_STATE_HOME,?XDG_RUNTIME_DIR,?DATA,?CONFIG")
                                           .replace("?", path));
        }
    }

    void programsRunAndStop()
    {
        const DesktopFixture fixture;
        const auto lines = [&](const QString &report) {
            return QStringList { "Name=App", "Exec=" + fixture.childCommand(report) };
        };
        fixture.app("app", lines("application"));
        fixture.write("home/etc/autostart/app.desktop", lines("autostart"));
        const auto object = _create(R"(Entry {
            property int raised
            property AutoStart autostart: AutoStart { }
            appId: 'app'
            onRaiseProcess: function(pid) { raised = pid }
            function begin() { autostart.start('Desktop Entry/Name', 'app'); start([]) }
            function end() { stop([]) }
            function run() { return data('Desktop Entry/Keywords') }
        })");
        _run(object, "begin");
        QTRY_COMPARE(_run(object), " running");
        QCOMPARE(fixture.report("autostart"), QStringList());
        _run(object, "begin");
        QVERIFY(object->property("raised").toInt() > 0);
        _run(object, "end");
        QTRY_COMPARE(_run(object), " stopped");
    }

    void whatAMethodReturnsOutlivesTheGarbage()
    {
        const DesktopFixture fixture;
        fixture.app("app", { "Name=App", "Exec=true" });
        const auto object = _create(R"(QtObject {
            property DesktopEntries entries: DesktopEntries { }
            property DesktopFilter filter: DesktopFilter { model: entries }
            property SortFilterProxyModel proxy: SortFilterProxyModel { sourceModel: filter }
            function run() {
                return [entries, filter, proxy].filter(function(model) {
                    return model.data(model.index(0, 0), 267)
                }).length
            }
        })");
        QTRY_COMPARE(_run(object), "3");
        const auto *entries = object->property("entries").value<QAbstractItemModel *>();
        const QPointer<const xdg::Entry> entry(
                entries->index(0, 0).data(267).value<const xdg::Entry *>());
        QVERIFY(entry);
        _engine.collectGarbage();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(entry);
        QCOMPARE(_run(object), "3");
    }

    void aViewBehindTheProxyKeepsItsCount()
    {
        const auto object = _create(R"(ListView {
            property NotificationManager manager: NotificationManager { }
            property Notifier peer: Notifier { }
            model: SortFilterProxyModel { sourceModel: manager }
            height: 100
            delegate: Text { height: 10; text: model.summary }
            function run() { manager.close(4711); forceLayout(); return count + itemAtIndex(0).text }
        })");
        auto *manager = object->property("manager").value<QObject *>();
        for (const char *summary : { "First", "Second", "Third" })
            xdg::serverNotify(manager, {}, 0, {}, summary, {}, {}, {}, 0);
        QCOMPARE(_run(object), "3Third");
    }

    void theProxySortsAndFindsWords()
    {
        QStandardItemModel source(0, 1);
        const auto object = _create(R"(SortFilterProxyModel {
            filterRoleNames: ['name', 'tags']
            function find(text, role, order) {
                filterText = text; sortRoleName = role; sortOrder = order
                return names()
            }
            function names() {
                return Array.from({ length: count }, (_, row) => get(row).name).join('+')
            }
            function run() {
                return [find('', 'name', 0), find('', 'size', 1), find('UBER tool gpa', '', 0),
                        find('isk', '', 0), find('ART', '', 0), sourceRow(0), find('c++', 'name', 0)].join()
            }
        })");
        auto *proxy = qobject_cast<QAbstractItemModel *>(object.get());
        QAbstractItemModelTester tester(proxy,
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
        object->setProperty("sourceModel", QVariant::fromValue<QAbstractItemModel *>(&source));
        object->setProperty("filterRole", 1001);
        object->setProperty("filterRegularExpression", QRegularExpression("^[^x]"));
        source.insertRows(0, 4);
        source.setItemRoleNames({ { 1001, "name" }, { 1002, "tags" }, { 1003, "size" } });
        source.setItemData(source.index(0, 0), { { 1001, "gnu" }, { 1002, "c++" }, { 1003, 9 } });
        source.setItemData(source.index(1, 0), { { 1001, "GParted" },
                                                 { 1002, QStringList { "disk tools", "Über" } },
                                                 { 1003, 10 } });
        source.setItemData(source.index(2, 0),
                           { { 1001, "Geany" }, { 1002, "c++" }, { 1003, 100 } });
        source.setItemData(source.index(3, 0), { { 1001, "xgnu" } });
        QCOMPARE(_run(object), "Geany+gnu+GParted,Geany+GParted+gnu,GParted,,GParted,1,Geany+gnu");

        QCoreApplication::sendPostedEvents(proxy);
        const QSignalSpy changed(proxy, &QAbstractItemModel::dataChanged);
        source.blockSignals(true);
        source.item(2)->setData("Xfce", 1001);
        source.item(1)->setData("c++", 1002);
        source.blockSignals(false);
        for (int i = 0; i < 2; ++i)
            Q_EMIT source.dataChanged({}, {}); // As the plain models do for a row that is gone.
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(changed[0][1].toModelIndex(), proxy->index(2, 0));
        QCOMPARE(_run(object, "names"), "gnu+GParted+Xfce");
    }

    void theTrayClicksItsItem()
    {
        const auto object = _create(R"(QtObject {
            id: tray
            property StatusNotifierWatcher watcher: StatusNotifierWatcher { }
            property StatusNotifierHost host
            property StatusNotifierItem item
            property Component hosts: Component { StatusNotifierHost { } }
            property Component items: Component {
                StatusNotifierItem {
                    title: 'Kettle'
                    onActivated: function(x, y) { clicks += x + ',' + y }
                    onSecondaryActivated: clicks += ' second'
                }
            }
            property string clicks
            Component.onCompleted: { host = hosts.createObject(tray); item = items.createObject(tray) }
            function title() { return host.data(host.index(0, 0), 259) }
            function click() { for (const mode of [0, 1]) host.activate(3, 4, item.idItem, mode) }
            function run() { return watcher.ProtocolVersion + ': ' + clicks }
        })");
        QTRY_COMPARE(_run(object, "title"), "Kettle");
        _run(object, "click");
        QTRY_COMPARE(_run(object), "1: 3,4 second");
    }

    void theExamplesLoad()
    {
        for (const char *name :
             { "first.qml", "panel.qml", "pending.qml", "search.qml", "traymenu.qml" }) {
            QQmlComponent component(&_engine, QUrl::fromLocalFile(QDir(EXAMPLES).filePath(name)));
            const std::unique_ptr<QObject> object(component.create());
            QVERIFY2(object, qPrintable(component.errorString()));
        }
    }
};

QTEST_MAIN(QmlTest)
#include "tst_qml.moc"
