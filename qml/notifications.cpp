#include "notifications.h"

#include "busservice.h"
#include "notificationservice.h"
#include "pendingnotifications.h"
#include "styledbody.h"

#include <QRandomGenerator>

#include <algorithm>
#include <vector>

namespace {

template<typename Pending>
auto findId(Pending &pending, uint id)
{
    return std::find_if(pending.begin(), pending.end(),
                        [id](const auto &one) { return one.id == id; });
}

// The id of what a post replaces, 0 for none. The number in a post is an id, or else one that a
// program thought of and has used before.
template<typename Pending>
uint replacedId(const Pending &pending, const NotificationPost &post)
{
    const auto found = std::find_if(pending.begin(), pending.end(), [&post](const auto &one) {
        return one.id == post.replacesId
               || (one.replacesId == post.replacesId && one.appName == post.appName);
    });
    return found == pending.end() ? 0 : found->id;
}

} // namespace

// Ids begin anywhere, so that a number which a program kept from an earlier service, or thought of
// itself, is nobody else's.
Notifications::Notifications(QObject *parent)
    : QAbstractListModel(parent)
    , _lastId(QRandomGenerator::global()->bounded(1U << 30))
    , _capabilities({ QStringLiteral("actions"), QStringLiteral("body"),
                      QStringLiteral("body-hyperlinks"), QStringLiteral("body-markup"),
                      QStringLiteral("icon-static"), QStringLiteral("persistence") })
    , _server(new NotificationService(this))
    , _bus(new BusService(QStringLiteral("org.freedesktop.Notifications"), _server, this))
{
    _timer.setSingleShot(true);
    _timer.setTimerType(Qt::PreciseTimer);
    connect(&_timer, &QTimer::timeout, this, &Notifications::_expire);
    connect(_bus, &BusService::changed, this, &Notifications::registeredChanged);
    connect(_bus, &BusService::changed, this, &Notifications::ownerChanged);
    new BusService(QStringLiteral("com.zovar.NotificationManager"), new PendingNotifications(this),
                   this);
}

Notifications::~Notifications() = default;

int Notifications::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_rows.size());
}

QVariant Notifications::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Notification &notification = _rows[index.row()];
    switch (role) {
    case IdRole:
        return notification.id;
    case AppNameRole:
        return notification.appName;
    case SummaryRole:
        return notification.summary;
    case BodyRole:
        return notification.body;
    case StyledBodyRole:
        return styledBody(notification.body);
    case IconSourceRole:
        return notification.iconSource();
    case UrgencyRole:
        return notification.urgency;
    case ProgressRole:
        return notification.progress;
    case CategoryRole:
        return notification.category;
    case DesktopEntryRole:
        return notification.desktopEntry;
    case TransientRole:
        return notification.transient;
    case ResidentRole:
        return notification.resident;
    case ActionsRole:
        return notification.buttons();
    case HasDefaultRole:
        return notification.offers(QStringLiteral("default"));
    case TimeRole:
        return notification.time;
    default:
        return {};
    }
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
             { TransientRole, "isTransient" },
             { ResidentRole, "resident" },
             { ActionsRole, "actions" },
             { HasDefaultRole, "hasDefault" },
             { TimeRole, "time" } };
}

bool Notifications::isRegistered() const
{
    return _bus->isRegistered();
}

QVariantMap Notifications::owner() const
{
    return _bus->owner();
}

int Notifications::defaultTimeout() const
{
    return _defaultTimeout;
}

void Notifications::setDefaultTimeout(int milliseconds)
{
    if (milliseconds == _defaultTimeout)
        return;
    _defaultTimeout = milliseconds;
    Q_EMIT defaultTimeoutChanged();
}

int Notifications::limit() const
{
    return _limit;
}

void Notifications::setLimit(int limit)
{
    limit = qMax(1, limit);
    if (limit == _limit)
        return;
    _limit = limit;
    _show();
    _closeSurplus();
    Q_EMIT limitChanged();
}

QStringList Notifications::capabilities() const
{
    return _capabilities;
}

void Notifications::setCapabilities(const QStringList &capabilities)
{
    if (capabilities == _capabilities)
        return;
    _capabilities = capabilities;
    Q_EMIT capabilitiesChanged();
}

uint Notifications::post(NotificationPost post)
{
    post.shorten();
    const uint id = post.id = _idFor(post);
    const auto waiting = findId(_waiting, id);
    if (waiting != _waiting.end()) {
        *waiting = std::move(post);
        return id;
    }
    if (_waiting.empty())
        QMetaObject::invokeMethod(this, &Notifications::_show, Qt::QueuedConnection);
    _waiting.push_back(std::move(post));
    if (int(_waiting.size()) > _limit)
        close(_waiting.front().id, Undefined);
    return id;
}

void Notifications::close(uint id, uint reason)
{
    const auto waiting = findId(_waiting, id);
    const bool waited = waiting != _waiting.end();
    if (waited)
        _waiting.erase(waiting);
    const int row = indexOf(id);
    if (row >= 0)
        _remove(row, row, reason);
    else if (waited)
        _server->sendNotificationClosed(id, reason);
}

QList<uint> Notifications::pending()
{
    _show();
    QList<uint> ids;
    for (const Notification &notification : _rows)
        ids += notification.id;
    std::sort(ids.begin(), ids.end());
    return ids;
}

QStringList Notifications::actionsOf(uint id)
{
    _show();
    const auto found = findId(_rows, id);
    return found == _rows.end() ? QStringList() : found->actions;
}

QVariantMap Notifications::get(int row) const
{
    if (!hasIndex(row, 0))
        return {};
    QVariantMap values;
    const auto names = roleNames();
    for (auto role = names.begin(); role != names.end(); ++role)
        values.insert(QString::fromLatin1(*role), data(index(row), role.key()));
    return values;
}

int Notifications::indexOf(uint id) const
{
    const auto found = findId(_rows, id);
    return found == _rows.end() ? -1 : int(found - _rows.begin());
}

void Notifications::dismiss(uint id)
{
    close(id, Dismissed);
}

void Notifications::invoke(uint id, const QString &key)
{
    _show();
    const auto found = findId(_rows, id);
    if (found == _rows.end() || !found->offers(key))
        return;
    const bool stays = found->resident;
    _server->sendActionInvoked(id, key);
    if (!stays)
        dismiss(id);
}

void Notifications::clear()
{
    _show();
    _remove(0, rowCount() - 1, Dismissed);
}

uint Notifications::_idFor(const NotificationPost &post)
{
    if (post.replacesId != 0) {
        const uint waiting = replacedId(_waiting, post);
        const uint id = waiting != 0 ? waiting : replacedId(_rows, post);
        if (id != 0)
            return id;
    }
    do
        ++_lastId;
    while (_lastId == 0 || indexOf(_lastId) >= 0 || findId(_waiting, _lastId) != _waiting.end());
    return _lastId;
}

Notification Notifications::_read(const NotificationPost &post) const
{
    Notification notification(post);
    const int timeout = post.timeout < 0 ? _defaultTimeout : post.timeout;
    if (timeout > 0 && !notification.isCritical())
        notification.deadline = QDeadlineTimer(timeout, Qt::PreciseTimer);
    return notification;
}

// Puts what waits into the list: all that is new at once, then what replaces.
void Notifications::_show()
{
    const auto isShown = [this](const NotificationPost &post) { return indexOf(post.id) >= 0; };
    const auto firstNew = std::stable_partition(_waiting.begin(), _waiting.end(), isShown);
    std::deque<Notification> fresh;
    std::for_each(firstNew, _waiting.end(),
                  [&](const NotificationPost &post) { fresh.push_front(_read(post)); });
    _waiting.erase(firstNew, _waiting.end());
    if (!fresh.empty())
        _insert(std::move(fresh));

    // Whoever hears of one may close another.
    while (!_waiting.empty()) {
        const NotificationPost post = std::move(_waiting.front());
        _waiting.pop_front();
        _replace(indexOf(post.id), _read(post));
    }
    _startTimer();
}

void Notifications::_insert(std::deque<Notification> fresh)
{
    std::vector<uint> ids;
    std::for_each(fresh.rbegin(), fresh.rend(),
                  [&](const Notification &notification) { ids.push_back(notification.id); });

    beginInsertRows(QModelIndex(), 0, int(fresh.size()) - 1);
    _rows.insert(_rows.begin(), std::make_move_iterator(fresh.begin()),
                 std::make_move_iterator(fresh.end()));
    endInsertRows();
    Q_EMIT countChanged();
    _closeSurplus();
    for (const uint id : ids)
        Q_EMIT posted(id);
}

void Notifications::_replace(int row, Notification notification)
{
    if (row < 0)
        return;
    const uint id = notification.id;
    const QModelIndex at = index(row);
    const QVariantMap before = get(row);
    _rows[row] = std::move(notification);

    QVector<int> roles;
    const auto names = roleNames();
    for (auto role = names.begin(); role != names.end(); ++role) {
        if (data(at, role.key()) != before.value(QString::fromLatin1(*role)))
            roles += role.key();
    }
    Q_EMIT dataChanged(at, at, roles);
    Q_EMIT replaced(id);
}

void Notifications::_remove(int first, int last, uint reason)
{
    if (first > last)
        return;
    std::vector<uint> ids;
    const auto begin = _rows.begin() + first;
    const auto end = _rows.begin() + last + 1;
    std::for_each(begin, end,
                  [&](const Notification &notification) { ids.push_back(notification.id); });

    beginRemoveRows(QModelIndex(), first, last);
    _rows.erase(begin, end);
    endRemoveRows();
    Q_EMIT countChanged();
    for (const uint id : ids) {
        Q_EMIT closed(id, reason);
        _server->sendNotificationClosed(id, reason);
    }
}

void Notifications::_closeSurplus()
{
    _remove(_limit, rowCount() - 1, Undefined);
}

void Notifications::_expire()
{
    _show(); // What waits may bring another time-out.
    std::vector<uint> ids;
    for (const Notification &notification : _rows) {
        if (notification.deadline.hasExpired())
            ids.push_back(notification.id);
    }
    for (const uint id : ids)
        close(id, Expired);
    _startTimer();
}

// One timer for all: it runs out at the next deadline.
void Notifications::_startTimer()
{
    QDeadlineTimer next = QDeadlineTimer::Forever;
    for (const Notification &notification : _rows)
        next = qMin(next, notification.deadline);
    if (next.isForever())
        _timer.stop();
    else
        _timer.start(int(next.remainingTime()));
}
