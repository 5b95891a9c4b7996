#include "trayitem_p.h"

#include <quorvaneshell/bus/asynccall_p.h>
#include <quorvaneshell/pictures/icon.h>

#include <QDBusError>
#include <QDeadlineTimer>
#include <QElapsedTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quorvane {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 3s;
constexpr auto clickPatience = patience + 500ms; // After it, what is read with a click has told.
// Items announce one change in several signals, and some animate their icon.
constexpr auto pause = 30ms;
constexpr auto longestPause = 10s;
constexpr auto firstRetry = 500ms; // And twice that from then on.

QString interfaceName()
{
    return QStringLiteral("org.kde.StatusNotifierItem");
}

bool isUnknownMethod(const QDBusMessage &answer)
{
    return QDBusError(answer).type() == QDBusError::UnknownMethod;
}

// What the bus answers for a program that left, as some do when they are clicked at.
bool hasLeft(const QDBusMessage &answer)
{
    const QDBusError::ErrorType error = QDBusError(answer).type();
    return error == QDBusError::NoReply || error == QDBusError::ServiceUnknown
           || error == QDBusError::Disconnected;
}

} // namespace

TrayItem::TrayItem(const TrayAddress &address, const QString &owner, QObject *parent)
    : QObject(parent)
    , _address(address)
    , _owner(owner)
    , _reading(owner, address.path, QStringLiteral("org.freedesktop.DBus.Properties"),
               QStringLiteral("GetAll"), { interfaceName() })
{
    connect(&_icon, &TrayIconSource::changed, this, [this] {
        _set(Tray::IconSourceRole, _icon.source());
        _announce();
    });
    connect(&_overlay, &TrayIconSource::changed, this, [this] {
        _set(Tray::OverlaySourceRole, _overlay.source());
        _announce();
    });
    _set(Tray::KeyRole, address.text());
    _set(Tray::RespondsRole, true);
    _takeValues(readTrayValues({}));
    _changed.clear();

    connect(&_reading, &PatientCall::answered, this, &TrayItem::_take);
    _pause.setSingleShot(true);
    _pause.setInterval(pause);
    connect(&_pause, &QTimer::timeout, this, &TrayItem::_read);
    _patience.setSingleShot(true);
    _patience.setInterval(patience);
    connect(&_patience, &QTimer::timeout, this, &TrayItem::_miss);
    _retry.setSingleShot(true);
    _retry.setInterval(firstRetry);
    connect(&_retry, &QTimer::timeout, this, &TrayItem::refresh);
    _clickPatience.setSingleShot(true);
    _clickPatience.setInterval(clickPatience);
    connect(&_clickPatience, &QTimer::timeout, this, &TrayItem::_missClick);
    _read();
}

QVariant TrayItem::value(int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return _text();
    case Qt::DecorationRole:
        return icon(value(Tray::IconSourceRole).toString(), _text());
    case Qt::ToolTipRole:
        return value(Tray::ToolTipRole);
    default:
        return _values.value(role);
    }
}

TrayMenu *TrayItem::menu()
{
    if (!value(Tray::HasMenuRole).toBool())
        return nullptr;
    if (!_menu) {
        _menu = new TrayMenu(this);
        _menu->setService(_owner);
        _menu->setPath(_menuPath);
    }
    return _menu;
}

void TrayItem::refresh()
{
    if (_reading.isWaiting())
        _outdated = true;
    else if (!_pause.isActive())
        _pause.start();
}

void TrayItem::activate(int x, int y)
{
    if (value(Tray::IsMenuRole).toBool()) {
        contextMenu(x, y);
        return;
    }
    const QDeadlineTimer deadline(patience);
    _click(QStringLiteral("Activate"), { x, y }, [this, x, y, deadline](const QDBusMessage &error) {
        if (!isUnknownMethod(error)) {
            _fail(error);
            return;
        }
        _hasMenuAlone = true;
        _set(Tray::IsMenuRole, true);
        const QPointer<TrayItem> self(this);
        _announce();
        // Long after the click a menu would come as a surprise.
        if (self && !deadline.hasExpired())
            contextMenu(x, y);
    });
}

void TrayItem::secondaryActivate(int x, int y)
{
    _click(QStringLiteral("SecondaryActivate"), { x, y }, [this](const QDBusMessage &error) {
        if (!isUnknownMethod(error))
            _fail(error);
    });
}

void TrayItem::contextMenu(int x, int y)
{
    if (value(Tray::HasMenuRole).toBool())
        Q_EMIT menuRequested(x, y);
    else
        _click(QStringLiteral("ContextMenu"), { x, y },
               [this](const QDBusMessage &error) { _fail(error); });
}

void TrayItem::scroll(int delta, Qt::Orientation orientation)
{
    // Where GTK's indicators say so in their paths, a number above zero is down.
    const bool isReversed = _address.path.startsWith(QLatin1String("/org/ayatana/"));
    const QString name = orientation == Qt::Horizontal ? QStringLiteral("horizontal")
                                                       : QStringLiteral("vertical");
    _click(QStringLiteral("Scroll"), { isReversed ? -delta : delta, name },
           [this](const QDBusMessage &error) {
               if (!isUnknownMethod(error))
                   _fail(error);
           });
}

void TrayItem::_read()
{
    _outdated = false;
    _retry.stop();
    _patience.start();
    _reading.ask();
}

// After each announcement the item may have gone.
void TrayItem::_take(const QDBusMessage &answer)
{
    QElapsedTimer clock;
    clock.start();
    _patience.stop();
    const QPointer<TrayItem> self(this);
    const bool answered = answer.type() == QDBusMessage::ReplyMessage;
    // Without values it has stood in another place.
    if (answered && !std::exchange(_hasAnswered, true))
        _setShown(false);
    if (!self)
        return;
    _set(Tray::RespondsRole, true);
    if (answered)
        _takeValues(readTrayValues(answer));
    if (self)
        _announce();
    // An error says that there is no such object, not yet or not any more.
    if (self)
        _setShown(answered);
    if (!self)
        return;
    // What takes long to read is read the less often.
    _pause.setInterval(
            std::min<std::chrono::milliseconds>(longestPause, pause + 20ms * clock.elapsed()));
    if (_outdated)
        refresh();
    else if (!answered)
        _tryAgain();
}

void TrayItem::_miss()
{
    _set(Tray::RespondsRole, false);
    const QPointer<TrayItem> self(this);
    _announce();
    if (self)
        _setShown(true);
}

void TrayItem::_takeValues(const TrayValues &values)
{
    _set(Tray::ItemIdRole, values.id);
    _set(Tray::TitleRole, values.title);
    _set(Tray::StatusRole, values.status);
    _set(Tray::CategoryRole, values.category);
    _icon.show(values.icon);
    _set(Tray::IconSourceRole, _icon.source());
    _overlay.show(values.overlay);
    _set(Tray::OverlaySourceRole, _overlay.source());
    _set(Tray::LabelRole, values.label);
    _set(Tray::ToolTipRole, values.toolTip);
    _set(Tray::IsMenuRole, _hasMenuAlone || values.isMenu);
    _setMenuPath(values.menuPath);
}

void TrayItem::_setMenuPath(const QString &path)
{
    const bool isNew = std::exchange(_menuPath, path) != path;
    if (isNew)
        _isMenuRefused = false;
    _set(Tray::HasMenuRole, !path.isEmpty() && !_isMenuRefused);
    if (!path.isEmpty() && (isNew || _isMenuRefused))
        _probeMenu();
    if (isNew && _menu)
        _menu->setPath(path);
}

// Some menus speak org.gtk.Menus alone, which is told by asking for nothing but the root.
void TrayItem::_probeMenu()
{
    constexpr int root = 0;
    constexpr int noLevels = 0;
    const QVariantList arguments { root, noLevels, QStringList(QStringLiteral("type")) };
    whenAnswered(callAsync(_owner, _menuPath, QStringLiteral("com.canonical.dbusmenu"),
                           QStringLiteral("GetLayout"), arguments),
                 this, [this, path = _menuPath](const QDBusMessage &answer) {
                     const QDBusError::ErrorType error = QDBusError(answer).type();
                     if (path != _menuPath)
                         return;
                     _isMenuRefused = error == QDBusError::UnknownMethod
                                      || error == QDBusError::UnknownInterface;
                     if (_isMenuRefused)
                         _tryAgain();
                     _set(Tray::HasMenuRole, !_isMenuRefused);
                     _announce();
                 });
}

// A few times, with pauses that grow.
void TrayItem::_tryAgain()
{
    if (_retry.isActive() || _retriesLeft == 0)
        return;
    --_retriesLeft;
    _retry.start(2 * _retry.interval());
}

void TrayItem::_set(int role, const QVariant &value)
{
    QVariant &present = _values[role];
    if (value == present)
        return;
    present = value;
    _changed.append(role);
}

// With the roles of Qt that show the same.
void TrayItem::_announce()
{
    QVector<int> roles = std::exchange(_changed, {});
    const bool isTextNew = roles.contains(Tray::TitleRole) || roles.contains(Tray::ItemIdRole);
    if (isTextNew)
        roles += Qt::DisplayRole;
    if (isTextNew || roles.contains(Tray::IconSourceRole))
        roles += Qt::DecorationRole;
    if (roles.contains(Tray::ToolTipRole))
        roles += Qt::ToolTipRole;
    if (!roles.isEmpty())
        Q_EMIT changed(roles);
}

void TrayItem::_setShown(bool shown)
{
    if (shown == _shown)
        return;
    _shown = shown;
    Q_EMIT shownChanged();
}

QString TrayItem::_text() const
{
    const QString title = value(Tray::TitleRole).toString();
    return title.isEmpty() ? value(Tray::ItemIdRole).toString() : title;
}

// Calls the item, and a function for an error. What the item tells of itself may have changed, too.
template<typename Function>
void TrayItem::_click(const QString &method, const QVariantList &arguments, Function failed)
{
    refresh();
    if (++_unansweredClicks == 1 || !_clickPatience.isActive())
        _clickPatience.start();
    whenAnswered(callAsync(_address.service, _address.path, interfaceName(), method, arguments),
                 this, [this, failed](const QDBusMessage &answer) {
                     if (--_unansweredClicks == 0)
                         _clickPatience.stop();
                     if (answer.type() == QDBusMessage::ErrorMessage && !hasLeft(answer))
                         failed(answer);
                 });
}

void TrayItem::_fail(const QDBusMessage &error)
{
    constexpr int maximalLength = 1000;
    const QString message = error.errorMessage().left(maximalLength);
    Q_EMIT failed(message.isEmpty() ? error.errorName() : message);
}

// The answer to a click may be long in coming, from a program that opens a dialog: whether the item
// responds is learned from its values.
void TrayItem::_missClick()
{
    if (!value(Tray::RespondsRole).toBool())
        Q_EMIT failed(QStringLiteral("%1 does not answer").arg(_text()));
}

} // namespace quorvane
