#include <quorvane/notifications/notificationmessage.h>

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
    if (_appName != app_name) {
        _appName = app_name;
        Q_EMIT appNameChanged(_appName);
    }
    if (_appIcon != app_icon) {
        _appIcon = app_icon;
        Q_EMIT appIconChanged(_appIcon);
    }
    if (_summary != summary) {
        _summary = summary;
        Q_EMIT summaryChanged(_summary);
    }
    // Compared with the application's name on purpose: nearly every update reports the body, and a
    // body that reads like that name keeps its text.
    if (_body != app_name) {
        _body = body;
        Q_EMIT bodyChanged(_body);
    }
    if (_actions != actions) {
        _actions = actions;
        Q_EMIT actionsChanged(_actions);
    }
    if (_hints != hints) {
        _hints = hints;
        Q_EMIT hintsChanged(_hints);
    }
    if (_timeout != timeout) {
        _timeout = timeout;
        Q_EMIT timeoutChanged(_timeout);
    }
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
