#include "notifications.h"

#include "notifications_p.h"
#include "styledbody_p.h"

#include <quorvaneshell/applications/applicationlist_p.h>
#include <quorvaneshell/pictures/icon.h>

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

// Those that models have by themselves, with the role that says the same.
const std::pair<int, int> standardRoles[] { { Qt::DisplayRole, Notifications::SummaryRole },
                                            { Qt::DecorationRole, Notifications::IconSourceRole },
                                            { Qt::ToolTipRole, Notifications::BodyRole } };

QVariant value(const Notification &notification, int role)
{
    switch (role) {
    case Notifications::IdRole:
        return notification.id;
    case Notifications::AppNameRole:
        return notification.appName;
    case Notifications::SummaryRole:
    case Qt::DisplayRole:
        return notification.summary;
    case Notifications::BodyRole:
        return notification.body;
    case Qt::ToolTipRole:
        return plainText(notification.body);
    case Notifications::StyledBodyRole:
        return notification.styledBody();
    case Notifications::IconSourceRole:
        return notification.iconSource();
    case Qt::DecorationRole:
        return icon(notification.iconSource());
    case Notifications::UrgencyRole:
        return notification.urgency; // QML of Qt 5 compares a number with an enumerator, and no other.
    case Notifications::ProgressRole:
        return notification.progress;
    case Notifications::CategoryRole:
        return notification.category;
    case Notifications::DesktopEntryRole:
        return notification.desktopEntry;
    case Notifications::IsTransientRole:
        return notification.isTransient;
    case Notifications::ResidentRole:
        return notification.resident;
    case Notifications::ActionsRole:
        return notification.buttons();
    case Notifications::HasDefaultRole:
        return notification.offers(QStringLiteral("default"));
    case Notifications::TimeRole:
        return notification.time;
    case Notifications::TimeoutRole:
        return notification.timeout;
    case Notifications::UnreadRole:
        return notification.unread;
    case Notifications::ExpiredRole:
        return notification.expired;
    default:
        return {};
    }
}

} // namespace

Notifications::Notifications(QObject *parent)
    : ListModel(parent)
    , _d(std::make_unique<NotificationsPrivate>(this))
{
    qRegisterMetaType<CloseReason>(); // For connections by name, in Qt 5.
    const NotificationService *service = _d->service.data();
    connect(service, &NotificationService::registrationChanged, this,
            &Notifications::registeredChanged);
    connect(service, &NotificationService::registrationChanged, this, &Notifications::ownerChanged);
    connect(service, &NotificationService::defaultTimeoutChanged, this,
            &Notifications::defaultTimeoutChanged);
    connect(service, &NotificationService::limitChanged, this, &Notifications::limitChanged);
    connect(service, &NotificationService::keepExpiredChanged, this,
            &Notifications::keepExpiredChanged);
    connect(service, &NotificationService::capabilitiesChanged, this,
            &Notifications::capabilitiesChanged);

    const NotificationList *list = _d->list();
    connect(list, &NotificationList::rowsChanged, this, [this] { _d->follow(); });
    // Whoever was told before may have closed it.
    connect(list, &NotificationList::posted, this, [this](uint id) {
        if (indexOf(id) >= 0)
            Q_EMIT posted(id);
    });
    connect(list, &NotificationList::replaced, this, [this](uint id) {
        if (indexOf(id) >= 0)
            Q_EMIT replaced(id);
    });
    connect(list, &NotificationList::expired, this, [this](uint id) {
        if (indexOf(id) >= 0)
            Q_EMIT expired(id);
    });
    connect(list, &NotificationList::closed, this,
            [this](uint id, uint reason) { Q_EMIT closed(id, CloseReason(reason)); });
    connect(_d->applications.data(), &ApplicationList::changed, this, [this] { _d->tellOfIcons(); });
    _d->follow();
}

Notifications::~Notifications() = default;

int Notifications::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_d->rows().size());
}

QVariant Notifications::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return value(*_d->rows().at(size_t(index.row())), role);
}

QHash<int, QByteArray> Notifications::roleNames() const
{
    return { { IdRole, "id" },
             { AppNameRole, "appName" },
             { SummaryRole, "summary" },
             { BodyRole, "body" },
             { StyledBodyRole, "styledBody" },
             { IconSourceRole, "iconSource" },
             { UrgencyRole, "urgency" },
             { ProgressRole, "progress" },
             { CategoryRole, "category" },
             { DesktopEntryRole, "desktopEntry" },
             { IsTransientRole, "isTransient" },
             { ResidentRole, "resident" },
             { ActionsRole, "actions" },
             { HasDefaultRole, "hasDefault" },
             { TimeRole, "time" },
             { TimeoutRole, "timeout" },
             { UnreadRole, "unread" },
             { ExpiredRole, "expired" } };
}

bool Notifications::isRegistered() const
{
    return _d->service->isRegistered();
}

QVariantMap Notifications::owner() const
{
    return _d->service->owner();
}

int Notifications::defaultTimeout() const
{
    return _d->service->defaultTimeout();
}

void Notifications::setDefaultTimeout(int milliseconds)
{
    _d->service->setDefaultTimeout(milliseconds);
}

int Notifications::limit() const
{
    return _d->service->limit();
}

void Notifications::setLimit(int limit)
{
    _d->service->setLimit(limit);
}

bool Notifications::keepExpired() const
{
    return _d->list()->keepsExpired();
}

void Notifications::setKeepExpired(bool keepExpired)
{
    _d->service->setKeepExpired(keepExpired);
}

int Notifications::unreadCount() const
{
    return _d->unreadCount();
}

QStringList Notifications::capabilities() const
{
    return _d->service->capabilities();
}

void Notifications::setCapabilities(const QStringList &capabilities)
{
    _d->service->setCapabilities(capabilities);
}

int Notifications::indexOf(uint id) const
{
    const NotificationRows &rows = _d->rows();
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [id](const auto &row) { return row->id == id; });
    return found == rows.end() ? -1 : int(found - rows.begin());
}

QVariantMap Notifications::find(uint id) const
{
    return get(indexOf(id));
}

void Notifications::invoke(uint id, const QString &actionId)
{
    _d->list()->invoke(id, actionId);
}

void Notifications::dismiss(uint id)
{
    close(id, Dismissed);
}

void Notifications::clear()
{
    _d->list()->clear();
}

void Notifications::close(uint id, CloseReason reason)
{
    _d->list()->close(id, reason);
}

void Notifications::expire(uint id)
{
    _d->list()->expire(id);
}

void Notifications::hold(uint id)
{
    _d->hold(id);
}

void Notifications::release(uint id)
{
    _d->release(id);
}

void Notifications::markRead(uint id)
{
    _d->list()->markRead(id);
}

void Notifications::markAllRead()
{
    _d->list()->markAllRead();
}

NotificationsPrivate::NotificationsPrivate(Notifications *model)
    : service(NotificationService::shared())
    , applications(ApplicationList::shared())
    , _model(model)
    , _walk(model, this)
{
}

NotificationsPrivate::~NotificationsPrivate()
{
    for (const uint id : std::as_const(_held))
        list()->release(id);
}

void NotificationsPrivate::follow()
{
    const QPointer<Notifications> alive(_model);
    _walk.show(list()->rows());
    if (!alive)
        return;
    const int unreadCount = int(
            std::count_if(_rows.begin(), _rows.end(), [](const auto &row) { return row->unread; }));
    if (std::exchange(_unreadCount, unreadCount) != unreadCount)
        Q_EMIT _model->unreadCountChanged();
}

void NotificationsPrivate::hold(uint id)
{
    if (list()->hold(id))
        _held += id;
}

void NotificationsPrivate::release(uint id)
{
    if (_held.removeOne(id))
        list()->release(id);
}

void NotificationsPrivate::tellOfIcons()
{
    if (_rows.empty())
        return;
    Q_EMIT _model->dataChanged(_model->index(0), _model->index(_model->rowCount() - 1),
                               { Notifications::IconSourceRole, Qt::DecorationRole });
}

void NotificationsPrivate::_rowsRemoved(const Wanted &rows)
{
    for (const NotificationRow &row : rows)
        _held.removeAll(row->id);
}

template<typename IsCurrent>
void NotificationsPrivate::_updateRows(const Wanted &wanted, const IsCurrent &isCurrent)
{
    for (size_t row = 0; isCurrent() && row < wanted.size(); ++row) {
        if (_rows[row] == wanted[row])
            continue;
        const NotificationRow before = std::exchange(_rows[row], wanted[row]);
        const QModelIndex at = _model->index(int(row));
        Q_EMIT _model->dataChanged(at, at, _changedRoles(*before, *wanted[row]));
    }
}

QVector<int> NotificationsPrivate::_changedRoles(const Notification &before,
                                                 const Notification &after) const
{
    QVector<int> roles;
    const QList<int> named = _model->roleNames().keys();
    for (const int role : named) {
        if (value(before, role) != value(after, role))
            roles += role;
    }
    for (const auto &[standard, same] : standardRoles) {
        if (roles.contains(same))
            roles += standard;
    }
    return roles;
}

} // namespace quorvane
