#include <quorvane/notifications/notificationmessage.h>

#include <QPointer>
#include <QTimer>

namespace xdg {

NotificationMessage::NotificationMessage(const QString &app_name, const QString &app_icon,
                                         const QString &summary, const QString &body,
                                         const QStringList &actions, const QVariantMap &hints,
                                         int timeout, QObject *parent)
    : QObject(parent)
    , _appName(app_name)
    , _appIcon(app_icon)
    , _summary(summary)
    , _body(body)
    , _actions(actions)
    , _hints(hints)
    , _timeout(timeout)
{
    _startExpiry();
}

void NotificationMessage::update(const QString &app_name, const QString &app_icon,
                                 const QString &summary, const QString &body,
                                 const QStringList &actions, const QVariantMap &hints, int timeout)
{
    // A listener may turn the event loop in the middle, and the message may be gone after that.
    const QPointer<NotificationMessage> alive(this);
    const auto set = [this, &alive](auto member, const auto &value, auto changed) {
        if (!alive || this->*member == value)
            return;
        this->*member = value;
        Q_EMIT(this->*changed)(value);
    };

    set(&NotificationMessage::_appName, app_name, &NotificationMessage::appNameChanged);
    set(&NotificationMessage::_appIcon, app_icon, &NotificationMessage::appIconChanged);
    set(&NotificationMessage::_summary, summary, &NotificationMessage::summaryChanged);
    // Compared with the application's name on purpose: nearly every update reports the body, and a
    // body that reads like that name keeps its text.
    if (alive && _body != app_name) {
        _body = body;
        Q_EMIT bodyChanged(body);
    }
    set(&NotificationMessage::_actions, actions, &NotificationMessage::actionsChanged);
    set(&NotificationMessage::_hints, hints, &NotificationMessage::hintsChanged);
    set(&NotificationMessage::_timeout, timeout, &NotificationMessage::timeoutChanged);
    if (alive)
        _startExpiry();
}

QString NotificationMessage::appName() const
{
    return _appName;
}

QString NotificationMessage::appIcon() const
{
    return _appIcon;
}

QString NotificationMessage::summary() const
{
    return _summary;
}

QString NotificationMessage::body() const
{
    return _body;
}

QStringList NotificationMessage::actions() const
{
    return _actions;
}

QVariantMap NotificationMessage::hints() const
{
    return _hints;
}

uint NotificationMessage::id() const
{
    return _id;
}

void NotificationMessage::setId(uint id)
{
    _id = id;
}

void NotificationMessage::_expired()
{
    Q_EMIT expired(this);
}

// No timer is kept: a deadline that has started is not taken back.
void NotificationMessage::_startExpiry()
{
    if (_timeout > 0)
        QTimer::singleShot(_timeout, this, &NotificationMessage::_expired);
}

} // namespace xdg
