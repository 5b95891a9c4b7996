#include "basedirectories.h"
#include "iconprovider.h"
#include "keptdesktopentries.h"
#include "sortfilterproxymodel.h"

#include <quorvane/desktop/autostart.h>
#include <quorvane/desktop/desktopfilter.h>
#include <quorvane/desktop/entry.h>
#include <quorvane/notifications/notificationactions.h>
#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notifier.h>
#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifieritem.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include <quorvaneshell/applications/applications.h>
#include <quorvaneshell/menus/traymenu.h>
#include <quorvaneshell/notifications/notificationpopups.h>
#include <quorvaneshell/notifications/notifications.h>
#include <quorvaneshell/tray/tray.h>

#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <qqml.h>

using namespace quorvane;

namespace {

template<typename Type>
void registerType(const char *uri, const char *name)
{
    qmlRegisterType<Type>(uri, 1, 1, name);
}

} // namespace

class QuorvanePlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char *uri) override
    {
        qmlRegisterSingletonType<BaseDirectories>(
                uri, 1, 1, "BaseDirectories",
                [](QQmlEngine *, QJSEngine *) -> QObject * { return new BaseDirectories; });

        registerType<xdg::Entry>(uri, "Entry");
        registerType<KeptDesktopEntries>(uri, "DesktopEntries");
        registerType<xdg::DesktopFilter>(uri, "DesktopFilter");
        registerType<xdg::AutoStart>(uri, "AutoStart");

        registerType<xdg::NotificationManager>(uri, "NotificationManager");
        registerType<xdg::NotificationActions>(uri, "NotificationActions");
        registerType<XdgNotifier>(uri, "Notifier");

        registerType<xdg::StatusNotifierWatcher>(uri, "StatusNotifierWatcher");
        registerType<xdg::StatusNotifierItem>(uri, "StatusNotifierItem");
        registerType<xdg::StatusNotifierHost>(uri, "StatusNotifierHost");

        // For shells.
        registerType<Applications>(uri, "Applications");
        registerType<Notifications>(uri, "Notifications");
        registerType<NotificationPopups>(uri, "NotificationPopups");
        registerType<Tray>(uri, "Tray");
        registerType<TrayMenu>(uri, "TrayMenu");

        // What sourceModel is, so that a model can stand right there.
        qmlRegisterAnonymousType<QAbstractItemModel>(uri, 1);
        registerType<SortFilterProxyModel>(uri, "SortFilterProxyModel");
    }

    void initializeEngine(QQmlEngine *engine, const char *) override
    {
        engine->addImageProvider(QStringLiteral("quorvane"), new IconProvider);
    }
};

#include "plugin.moc"
