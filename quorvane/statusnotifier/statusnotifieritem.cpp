#include <quorvane/statusnotifier/statusnotifieritem.h>

#include <quorvane/basedir/logging.h>
#include <quorvane/statusnotifier/statusnotifieritemadaptor.h>
#include <quorvane/statusnotifier/statusnotifierwatcherinterface.h>

#include <QDBusConnection>
#include <QDebug>
#include <QGuiApplication>

namespace {

QString defaultId()
{
    const QString desktopFile = QGuiApplication::desktopFileName();
    return desktopFile.isEmpty() ? QCoreApplication::applicationName() : desktopFile;
}

} // namespace

namespace xdg {

StatusNotifierItem::StatusNotifierItem(QObject *parent)
    : QObject(parent)
    , _permittedCategories { QStringLiteral("ApplicationStatus"), QStringLiteral("Communications"),
                             QStringLiteral("SystemServices"), QStringLiteral("Hardware") }
    , _permittedStatuses { QStringLiteral("Passive"), QStringLiteral("Active"),
                           QStringLiteral("NeedsAttention") }
    , _status(QStringLiteral("Active"))
    , _category(QStringLiteral("ApplicationStatus"))
{
    QDBusConnection connection = QDBusConnection::sessionBus();
    if (!connection.isConnected()) {
        qCWarning(SYSTEM_TRAY) << "Cannot connect to the D-Bus session bus.\n"
                               << "Please check your system settings and try again.\n";
    }
    setId(defaultId());
    const QString service = QLatin1String("org.quorvane.") + Id() + QLatin1Char('-')
                            + QString::number(QCoreApplication::applicationPid());

    // The name is claimed inside the statement on purpose: without debug output of the category
    // the item stays out of the tray.
    qCDebug(SYSTEM_TRAY) << "Register Item service" << service << ":"
                         << connection.registerService(service);

    new StatusNotifierItemAdaptor(this);
    connection.registerObject(QStringLiteral("/StatusNotifierItem"), this,
                              QDBusConnection::ExportAdaptors);

    // Left alive until the process ends.
    auto *watcher = new OrgKdeStatusNotifierWatcherInterface(
            QStringLiteral("org.kde.StatusNotifierWatcher"),
            QStringLiteral("/StatusNotifierWatcher"), connection);
    watcher->RegisterStatusNotifierItem(service);
}

StatusNotifierItem::~StatusNotifierItem() = default;

QString StatusNotifierItem::Category() const
{
    return _category;
}

void StatusNotifierItem::setCategory(const QString &category)
{
    if (category == _category)
        return;
    if (!_permittedCategories.contains(category, Qt::CaseSensitive)) {
        qCWarning(SYSTEM_TRAY) << "Category " << category << "not authorized";
        return;
    }
    _category = category;
    Q_EMIT CategoryChanged();
}

QString StatusNotifierItem::Id() const
{
    return _id;
}

void StatusNotifierItem::setId(const QString &id)
{
    if (id == _id)
        return;
    _id = id;
    Q_EMIT IdChanged();
}

QString StatusNotifierItem::Title() const
{
    return _title;
}

void StatusNotifierItem::setTitle(const QString &title)
{
    if (title == _title)
        return;
    _title = title;
    Q_EMIT NewTitle();
    Q_EMIT TitleChanged();
}

QString StatusNotifierItem::Status() const
{
    return _status;
}

void StatusNotifierItem::setStatus(const QString &status)
{
    if (status == _status)
        return;
    if (!_permittedStatuses.contains(status, Qt::CaseSensitive)) {
        qCWarning(SYSTEM_TRAY) << "Status " << status << "not authorized";
        return;
    }
    _status = status;
    Q_EMIT StatusChanged();
    Q_EMIT NewStatus(status);
}

QString StatusNotifierItem::WindowId() const
{
    return _windowId;
}

void StatusNotifierItem::setWindowId(const QString &windowId)
{
    if (windowId == _windowId)
        return;
    _windowId = windowId;
    Q_EMIT WindowIdChanged();
}

QString StatusNotifierItem::IconName() const
{
    return _iconName;
}

void StatusNotifierItem::setIconName(const QString &iconName)
{
    if (iconName == _iconName)
        return;
    _iconName = iconName;
    Q_EMIT IconNameChanged();
    Q_EMIT NewIcon();
}

QString StatusNotifierItem::OverlayIconName() const
{
    return _overlayIconName;
}

void StatusNotifierItem::setOverlayIconName(const QString &overlayIconName)
{
    if (overlayIconName == _overlayIconName)
        return;
    _overlayIconName = overlayIconName;
    Q_EMIT overlayIconNameChanged();
    Q_EMIT NewOverlayIcon();
}

QString StatusNotifierItem::AttentionIconName() const
{
    return _attentionIconName;
}

void StatusNotifierItem::setAttentionIconName(const QString &attentionIconName)
{
    if (attentionIconName == _attentionIconName)
        return;
    _attentionIconName = attentionIconName;
    Q_EMIT AttentionIconNameChanged();
}

QString StatusNotifierItem::AttentionMovieName() const
{
    return _attentionMovieName;
}

void StatusNotifierItem::setAttentionMovieName(const QString &attentionMovieName)
{
    if (attentionMovieName == _attentionMovieName)
        return;
    _attentionMovieName = attentionMovieName;
    Q_EMIT AttentionMovieNameChanged();
}

void StatusNotifierItem::Activate(uint x, uint y)
{
    Q_EMIT activated(x, y);
}

void StatusNotifierItem::SecondaryActivate(uint x, uint y)
{
    Q_EMIT secondaryActivated(x, y);
}

} // namespace xdg
