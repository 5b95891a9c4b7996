#include "notificationmodelrows_p.h"

#include "notifications.h"
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

NotificationModelRows::NotificationModelRows(ListModel *model)
    : _model(model)
    , _applications(ApplicationList::shared())
    , _walk(model, this)
{
    QObject::connect(_applications.data(), &ApplicationList::changed, model,
                     [this] { _tellOfIcons(); });
}

NotificationModelRows::~NotificationModelRows() = default;

QHash<int, QByteArray> NotificationModelRows::roleNames()
{
    return { { Notifications::IdRole, "id" },
             { Notifications::AppNameRole, "appName" },
             { Notifications::SummaryRole, "summary" },
             { Notifications::BodyRole, "body" },
             { Notifications::StyledBodyRole, "styledBody" },
             { Notifications::IconSourceRole, "iconSource" },
             { Notifications::UrgencyRole, "urgency" },
             { Notifications::ProgressRole, "progress" },
             { Notifications::CategoryRole, "category" },
             { Notifications::DesktopEntryRole, "desktopEntry" },
             { Notifications::IsTransientRole, "isTransient" },
             { Notifications::ResidentRole, "resident" },
             { Notifications::ActionsRole, "actions" },
             { Notifications::HasDefaultRole, "hasDefault" },
             { Notifications::TimeRole, "time" },
             { Notifications::TimeoutRole, "timeout" },
             { Notifications::UnreadRole, "unread" },
             { Notifications::ExpiredRole, "expired" } };
}

QVariant NotificationModelRows::data(const QModelIndex &index, int role) const
{
    if (!_model->checkIndex(index, QAbstractItemModel::CheckIndexOption::IndexIsValid))
        return {};
    return value(*_rows.at(size_t(index.row())), role);
}

int NotificationModelRows::indexOf(uint id) const
{
    const auto found = std::find_if(_rows.begin(), _rows.end(),
                                    [id](const auto &row) { return row->id == id; });
    return found == _rows.end() ? -1 : int(found - _rows.begin());
}

void NotificationModelRows::show(const Wanted &wanted)
{
    _walk.show(wanted);
}

// Those without an icon of their own have that of their application.
void NotificationModelRows::_tellOfIcons()
{
    if (_rows.empty())
        return;
    Q_EMIT _model->dataChanged(_model->index(0), _model->index(_model->rowCount() - 1),
                               { Notifications::IconSourceRole, Qt::DecorationRole });
}

template<typename IsCurrent>
void NotificationModelRows::_updateRows(const Wanted &wanted, const IsCurrent &isCurrent)
{
    for (size_t row = 0; isCurrent() && row < wanted.size(); ++row) {
        if (_rows[row] == wanted[row])
            continue;
        const NotificationRow before = std::exchange(_rows[row], wanted[row]);
        const QModelIndex at = _model->index(int(row));
        Q_EMIT _model->dataChanged(at, at, _changedRoles(*before, *wanted[row]));
    }
}

QVector<int> NotificationModelRows::_changedRoles(const Notification &before,
                                                  const Notification &after) const
{
    QVector<int> roles;
    const QList<int> named = roleNames().keys();
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
