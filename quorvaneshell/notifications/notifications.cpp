#include "notifications.h"

#include "notificationlist_p.h"

#include <quorvaneshell/applications/applicationlist_p.h>

#include <QPointer>

#include <algorithm>

namespace quorvane {

Notifications::Notifications(QObject *parent)
    : ListModel(parent)
    , _list(NotificationList::shared())
    , _rows(_list->rows())
    , _applications(ApplicationList::shared())
{
    const NotificationList *list = _list.data();
    connect(list, &NotificationList::rowsChanged, this, &Notifications::_follow);
    // Whoever was told before may have closed it.
    connect(list, &NotificationList::posted, this, [this](uint id) {
        if (indexOf(id) >= 0)
            Q_EMIT posted(id);
    });
    connect(list, &NotificationList::replaced, this, [this](uint id) {
        if (indexOf(id) >= 0)
            Q_EMIT replaced(id);
    });
    connect(list, &NotificationList::closed, this, &Notifications::closed);
    connect(list, &NotificationList::registrationChanged, this, &Notifications::registeredChanged);
    connect(list, &NotificationList::registrationChanged, this, &Notifications::ownerChanged);
    connect(list, &NotificationList::defaultTimeoutChanged, this,
            &Notifications::defaultTimeoutChanged);
    connect(list, &NotificationList::limitChanged, this, &Notifications::limitChanged);
    connect(list, &NotificationList::capabilitiesChanged, this, &Notifications::capabilitiesChanged);
    // Those without an icon of their own have that of their application.
    connect(_applications.data(), &ApplicationList::changed, this, [this] {
        if (!_rows.isEmpty())
            Q_EMIT dataChanged(index(0), index(int(_rows.size()) - 1), { IconSourceRole });
    });
}

Notifications::~Notifications() = default;

int Notifications::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : _rows.size();
}

QVariant Notifications::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Notification &notification = *_rows.at(index.row());
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
        return notification.styledBody();
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
    case IsTransientRole:
        return notification.isTransient;
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
             { IsTransientRole, "isTransient" },
             { ResidentRole, "resident" },
             { ActionsRole, "actions" },
             { HasDefaultRole, "hasDefault" },
             { TimeRole, "time" } };
}

bool Notifications::isRegistered() const
{
    return _list->isRegistered();
}

QVariantMap Notifications::owner() const
{
    return _list->owner();
}

int Notifications::defaultTimeout() const
{
    return _list->defaultTimeout();
}

void Notifications::setDefaultTimeout(int milliseconds)
{
    _list->setDefaultTimeout(milliseconds);
}

int Notifications::limit() const
{
    return _list->limit();
}

void Notifications::setLimit(int limit)
{
    _list->setLimit(limit);
}

QStringList Notifications::capabilities() const
{
    return _list->capabilities();
}

void Notifications::setCapabilities(const QStringList &capabilities)
{
    _list->setCapabilities(capabilities);
}

uint Notifications::post(const NotificationPost &post)
{
    return _list->post(post);
}

void Notifications::close(uint id, uint reason)
{
    _list->close(id, reason);
}

QList<uint> Notifications::pending()
{
    return _list->pending();
}

QStringList Notifications::actionsOf(uint id)
{
    return _list->actionsOf(id);
}

int Notifications::indexOf(uint id) const
{
    const auto found = std::find_if(_rows.begin(), _rows.end(), [id](const auto &notification) {
        return notification->id == id;
    });
    return found == _rows.end() ? -1 : int(found - _rows.begin());
}

void Notifications::dismiss(uint id)
{
    _list->close(id, Dismissed);
}

void Notifications::invoke(uint id, const QString &key)
{
    _list->invoke(id, key);
}

void Notifications::clear()
{
    _list->clear();
}

// Whoever is told of a step may delete this object, or bring about further changes: those are
// followed after these.
void Notifications::_follow()
{
    _behind = true;
    if (_following)
        return;
    _following = true;
    const QPointer<Notifications> alive(this);
    while (alive && _behind) {
        _behind = false;
        const int count = rowCount();
        const auto wanted = _list->rows();
        _removeGone(wanted);
        if (alive)
            _insertNew(wanted);
        if (alive)
            _change(wanted);
        if (alive && rowCount() != count)
            Q_EMIT countChanged();
    }
    if (alive)
        _following = false;
}

// Rows never change their order and new ones are in front, so both are walked from the end.
void Notifications::_removeGone(const Rows &wanted)
{
    const QPointer<Notifications> alive(this);
    int kept = wanted.size();
    const auto isKept = [this, &wanted, &kept](int row) {
        return kept > 0 && wanted.at(kept - 1)->id == _rows.at(row)->id;
    };
    for (int row = rowCount() - 1; alive && row >= 0; --row) {
        if (isKept(row)) {
            --kept;
            continue;
        }
        const int last = row;
        while (row > 0 && !isKept(row - 1))
            --row;
        beginRemoveRows(QModelIndex(), row, last);
        _rows.remove(row, last - row + 1);
        endRemoveRows();
    }
}

void Notifications::_insertNew(const Rows &wanted)
{
    const int added = wanted.size() - rowCount();
    if (added == 0)
        return;
    beginInsertRows(QModelIndex(), 0, added - 1);
    _rows = wanted.mid(0, added) + _rows;
    endInsertRows();
}

void Notifications::_change(const Rows &wanted)
{
    const QPointer<Notifications> alive(this);
    const auto names = roleNames();
    for (int row = 0; alive && row < wanted.size(); ++row) {
        if (_rows.at(row) == wanted.at(row))
            continue;
        const QVariantMap before = get(row);
        _rows[row] = wanted.at(row);
        const QModelIndex at = index(row);
        QVector<int> roles;
        for (auto role = names.begin(); role != names.end(); ++role) {
            if (data(at, role.key()) != before.value(QString::fromLatin1(*role)))
                roles += role.key();
        }
        Q_EMIT dataChanged(at, at, roles);
    }
}

} // namespace quorvane
