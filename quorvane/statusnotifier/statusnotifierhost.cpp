#include <quorvane/statusnotifier/statusnotifierhost.h>

#include <quorvane/basedir/logging.h>
#include <quorvane/statusnotifier/statusnotifieriteminterface.h>
#include <quorvane/statusnotifier/statusnotifierwatcherinterface.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDebug>
#include <QMap>
#include <QStringList>

using ItemProxy = OrgKdeStatusNotifierItemInterface;
using WatcherProxy = OrgKdeStatusNotifierWatcherInterface;

namespace {

struct RoleOfItem
{
    int role;
    const char *name;
    const char *property;
};

constexpr RoleOfItem rolesOfItem[] = {
    { xdg::StatusNotifierHost::CategoryRole, "category", "Category" },
    { xdg::StatusNotifierHost::IdRole, "idItem", "Id" },
    { xdg::StatusNotifierHost::TitleRole, "title", "Title" },
    { xdg::StatusNotifierHost::StatusRole, "status", "Status" },
    { xdg::StatusNotifierHost::WindowIdRole, "windowId", "WindowId" },
    { xdg::StatusNotifierHost::IconNameRole, "iconName", "IconName" },
    { xdg::StatusNotifierHost::OverlayIconNameRole, "overlayIconName", "OverlayIconName" },
    { xdg::StatusNotifierHost::AttentionIconNameRole, "attentionIconName", "AttentionIconName" },
    { xdg::StatusNotifierHost::AttentionMovieNameRole, "attentionMovieName", "AttentionMovieName" },
};

// Null for a role that no item has.
const char *propertyOfRole(int role)
{
    for (const RoleOfItem &candidate : rolesOfItem) {
        if (candidate.role == role)
            return candidate.property;
    }
    return nullptr;
}

// Names come from strangers. Qt takes one without a dot for a bus name, and libdbus ends the process
// over a call to it; "/" is no name either, but one that Qt refuses to call.
QString callable(const QString &service)
{
    const bool bare = !service.isEmpty() && !service.contains(QLatin1Char('.'));
    return bare ? QStringLiteral("/") : service;
}

} // namespace

namespace xdg {

class StatusNotifierHostPrivate
{
public:
    explicit StatusNotifierHostPrivate(StatusNotifierHost *host);

    void addItem(const QString &id);
    void removeItem(const QString &id);
    ItemProxy *itemInRow(int row) const;

    StatusNotifierHost *q;
    QMap<QString, ItemProxy *> _items;
    QStringList _rowOrder;
    WatcherProxy *_watcher = nullptr;
    QDBusConnection _connection;
    QString _serviceName;

private:
    template<typename Signal>
    void _report(ItemProxy *item, Signal signal, int row, int role);
};

StatusNotifierHostPrivate::StatusNotifierHostPrivate(StatusNotifierHost *host)
    : q(host)
    , _connection(QDBusConnection::sessionBus())
    , _serviceName(QLatin1String("org.kde.StatusNotifierHost-")
                   + QString::number(QCoreApplication::applicationPid()))
{
}

void StatusNotifierHostPrivate::addItem(const QString &id)
{
    const QString service
            = id.split(QLatin1Char('/'), Qt::KeepEmptyParts, Qt::CaseSensitive).first();
    auto *item = new ItemProxy(callable(service), QStringLiteral("/StatusNotifierItem"),
                               _connection, q);
    const int row = _rowOrder.size();
    q->beginInsertRows(QModelIndex(), row, row);
    _rowOrder.append(id);
    _items.insert(id, item);
    _report(item, &ItemProxy::NewAttentionIcon, row, StatusNotifierHost::AttentionIconNameRole);
    _report(item, &ItemProxy::NewIcon, row, StatusNotifierHost::IconNameRole);
    _report(item, &ItemProxy::NewOverlayIcon, row, StatusNotifierHost::OverlayIconNameRole);
    _report(item, &ItemProxy::NewStatus, row, StatusNotifierHost::StatusRole);
    _report(item, &ItemProxy::NewTitle, row, StatusNotifierHost::TitleRole);
    q->endInsertRows();
}

void StatusNotifierHostPrivate::removeItem(const QString &id)
{
    // For an unknown item the row is -1, and is announced like any other. An item that was entered
    // twice leaves rows behind the last one that is counted: a proxy model drops a row that equals
    // the count, and writes behind its end for a larger one.
    const int row = qMin(_rowOrder.indexOf(id), q->rowCount());
    q->beginRemoveRows(QModelIndex(), row, row);
    _rowOrder.removeAll(id);
    if (ItemProxy *item = _items.take(id))
        item->deleteLater();
    q->endRemoveRows();
}

ItemProxy *StatusNotifierHostPrivate::itemInRow(int row) const
{
    return _items.value(_rowOrder.value(row));
}

// The row is that of the item's arrival, on purpose: once a row above has gone, the changes of the
// item are announced for its neighbour or, past the end, for an invalid index.
template<typename Signal>
void StatusNotifierHostPrivate::_report(ItemProxy *item, Signal signal, int row, int role)
{
    const auto report = [this, row, role]() {
        const QModelIndex index = q->index(row, 0);
        Q_EMIT q->dataChanged(index, index, { role });
    };
    QObject::connect(item, signal, item, report, Qt::DirectConnection);
}

StatusNotifierHost::StatusNotifierHost(QObject *parent)
    : QAbstractListModel(parent)
    , _d(std::make_unique<StatusNotifierHostPrivate>(this))
{
    // The name is claimed inside the statement on purpose, as that of an item is.
    qCDebug(SYSTEM_TRAY) << "Register Host service" << _d->_serviceName << ":"
                         << _d->_connection.registerService(_d->_serviceName);

    _d->_watcher
            = new WatcherProxy(QStringLiteral("org.kde.StatusNotifierWatcher"),
                               QStringLiteral("/StatusNotifierWatcher"), _d->_connection, this);
    qCDebug(SYSTEM_TRAY) << "Find Watcher " << _d->_watcher->isValid() << " with protocol "
                         << _d->_watcher->protocolVersion();
    if (!_d->_watcher->isValid()) {
        qCWarning(SYSTEM_TRAY)
                << "Can't find watcher org.kde.StatusNotifierWatcher/StatusNotifierWatcher";
    }
    _d->_watcher->RegisterStatusNotifierHost(_d->_serviceName);

    connect(
            _d->_watcher, &WatcherProxy::StatusNotifierItemRegistered, _d->_watcher,
            [this](const QString &id) { _d->addItem(id); }, Qt::DirectConnection);
    connect(
            _d->_watcher, &WatcherProxy::StatusNotifierItemUnregistered, _d->_watcher,
            [this](const QString &id) { _d->removeItem(id); }, Qt::DirectConnection);
    const QStringList ids = _d->_watcher->registeredStatusNotifierItems();
    for (const QString &id : ids)
        _d->addItem(id);
}

StatusNotifierHost::~StatusNotifierHost() = default;

int StatusNotifierHost::rowCount(const QModelIndex & /*parent*/) const
{
    return _d->_items.size();
}

QVariant StatusNotifierHost::data(const QModelIndex &index, int role) const
{
    const int row = index.row();
    if (row > _d->_rowOrder.size())
        return QVariant();
    const ItemProxy *item = _d->itemInRow(row);
    const char *property = propertyOfRole(role);
    if (!item || !property)
        return QVariant();
    const QVariant value = item->property(property);
    if (role == WindowIdRole)
        return qvariant_cast<int>(value);
    return qvariant_cast<QString>(value);
}

QHash<int, QByteArray> StatusNotifierHost::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    for (const RoleOfItem &role : rolesOfItem)
        names.insert(role.role, role.name);
    return names;
}

void StatusNotifierHost::activate(int x, int y, QString id, int mode)
{
    const QStringList ids = _d->_rowOrder; // A read from an item could let the list change.
    for (const QString &itemId : ids) {
        ItemProxy *item = _d->_items.value(itemId);
        if (!item || item->id() != id)
            continue;
        if (mode == 1)
            item->SecondaryActivate(x, y);
        else
            item->Activate(x, y);
        return;
    }
}

} // namespace xdg
