#include "menuclient_p.h"

#include <quorvaneshell/bus/asynccall_p.h>
#include <quorvaneshell/bus/busreader_p.h>

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QPointer>

#include <chrono>
#include <utility>

namespace quorvane {

namespace {

using namespace std::chrono_literals;

constexpr auto pause = 50ms;
constexpr auto longestPause = 10s;
constexpr auto patience = 2900ms; // So that a menu can say within three seconds that it failed.
constexpr int maximalPath = 1000;

QString menuInterface()
{
    return QStringLiteral("com.canonical.dbusmenu");
}

QVariantList wholeLayout()
{
    constexpr int root = 0;
    constexpr int allLevels = -1;
    const QStringList allProperties;
    return { root, allLevels, allProperties };
}

} // namespace

MenuClient::MenuClient(const QString &service, const QString &path, QObject *parent)
    : QObject(parent)
    , _service(service)
    , _path(path)
    , _layout(service, path, menuInterface(), QStringLiteral("GetLayout"), wholeLayout())
    , _theme(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
             QStringLiteral("Get"), { menuInterface(), QStringLiteral("IconThemePath") })
{
    keepReadingSessionBus();
    connect(&_layout, &PatientCall::answered, this, &MenuClient::_fetched);
    connect(&_theme, &PatientCall::answered, this, [this](const QDBusMessage &answer) {
        const auto value = answer.arguments().value(0).value<QDBusVariant>();
        const QString first = value.variant().toStringList().value(0).left(maximalPath);
        if (std::exchange(_themePath, first) != first)
            Q_EMIT themePathChanged();
    });

    _pause.setSingleShot(true);
    _pause.setInterval(pause);
    connect(&_pause, &QTimer::timeout, this, &MenuClient::_update);

    _patience.setSingleShot(true);
    _patience.setTimerType(Qt::PreciseTimer);
    _patience.setInterval(patience);
    connect(&_patience, &QTimer::timeout, this, &MenuClient::_miss);

    // Without the name: for one, Qt asks the bus for its owner and waits.
    QDBusConnection::sessionBus().connect(QString(), path, menuInterface(), QString(), this,
                                          SLOT(_hearMenu(QDBusMessage)));
    connect(&_names, &BusNames::ownerKnown, this,
            [this](const QString &, const QString &owner) { _ownerChanged(owner); });
    _names.follow(service);
    _begin();
}

bool MenuClient::isLoaded() const
{
    return _loaded;
}

bool MenuClient::responds() const
{
    return _responds;
}

QString MenuClient::themePath() const
{
    return _themePath;
}

void MenuClient::prepare(int id)
{
    _announcing.insert(id);
    _expectAnswer();
    const auto call
            = callAsync(_service, _path, menuInterface(), QStringLiteral("AboutToShow"), { id });
    whenAnswered(call, this, [this, id](const QDBusMessage &answer) {
        const bool isAwaited = _announcing.remove(id);
        const QPointer<MenuClient> self(this);
        _hear(answer);
        if (self && isAwaited)
            _announced(id, answer);
    });
    // Some programs don't answer this call; the layout may be asked for all the same.
    QTimer::singleShot(patience / 2, this, [this, id] {
        if (_announcing.remove(id))
            _announced(id, {});
    });
}

void MenuClient::sendEvent(int id, const QString &event)
{
    const QVariant noData = QVariant::fromValue(QDBusVariant(0));
    constexpr uint noTime = 0;
    callAsync(_service, _path, menuInterface(), QStringLiteral("Event"),
              { id, event, noData, noTime });
}

// The bus vouches for the sender. What comes before its name is known is in the layout.
void MenuClient::_hearMenu(const QDBusMessage &signal)
{
    if (signal.service() != _owner)
        return;
    if (signal.member() == QLatin1String("LayoutUpdated"))
        _layoutUpdated();
    else if (signal.member() == QLatin1String("ItemsPropertiesUpdated"))
        _propertiesUpdated(signal);
    else if (signal.member() == QLatin1String("ItemActivationRequested"))
        Q_EMIT activationRequested();
}

void MenuClient::_ownerChanged(const QString &owner)
{
    _owner = owner;
    if (!std::exchange(_isOwnerKnown, true))
        return;
    _updates.clear();
    const QPointer<MenuClient> self(this);
    Q_EMIT layoutReceived({});
    if (self && !owner.isEmpty())
        _begin();
}

void MenuClient::_begin()
{
    _theme.ask();
    _fetch();
}

void MenuClient::_layoutUpdated()
{
    _isLayoutOutdated = true;
    _updates.clear();
    if (!_layout.isWaiting() && !_pause.isActive())
        _pause.start();
}

// A layout that is on its way, or will be fetched, has them.
void MenuClient::_propertiesUpdated(const QDBusMessage &signal)
{
    if (_layout.isWaiting() || _isLayoutOutdated)
        return;
    QElapsedTimer clock;
    clock.start();
    const QHash<int, QVariantMap> updates = readPropertyUpdates(signal);
    for (auto update = updates.cbegin(); update != updates.cend(); ++update) {
        QVariantMap &properties = _updates[update.key()];
        for (auto property = update->cbegin(); property != update->cend(); ++property)
            properties.insert(property.key(), property.value());
    }
    constexpr qint64 longestReading = 5'000'000;
    constexpr int mostUpdates = 2000;
    _readingTime += clock.nsecsElapsed();
    if (_updates.size() > mostUpdates || _readingTime > longestReading)
        _layoutUpdated();
    else if (!_pause.isActive())
        _pause.start();
}

void MenuClient::_update()
{
    if (_isLayoutOutdated) {
        _fetch();
        return;
    }
    QElapsedTimer clock;
    clock.start();
    const QPointer<MenuClient> self(this);
    Q_EMIT propertiesReceived(std::exchange(_updates, {}));
    if (self)
        _rest(clock.nsecsElapsed());
}

// What takes long is done the less often.
void MenuClient::_rest(qint64 nanoseconds)
{
    const auto spent = std::chrono::nanoseconds(nanoseconds + std::exchange(_readingTime, 0));
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(20 * spent);
    _pause.setInterval(std::min<std::chrono::milliseconds>(longestPause, pause + rest));
}

void MenuClient::_fetch()
{
    _fetchAgain = _layout.isWaiting();
    if (_fetchAgain)
        return;
    _isLayoutOutdated = false;
    _updates.clear();
    _pause.stop();
    _expectAnswer();
    _layout.ask();
}

void MenuClient::_fetched(const QDBusMessage &answer)
{
    QElapsedTimer clock;
    clock.start();
    const QPointer<MenuClient> self(this);
    _loaded = true;
    _hear(answer);
    const bool failed = answer.type() == QDBusMessage::ErrorMessage;
    if (self && failed)
        _setResponds(false);
    if (self && QDBusError(answer).type() != QDBusError::NoReply)
        Q_EMIT layoutReceived(readLayout(answer));
    if (!self)
        return;
    _rest(clock.nsecsElapsed());
    if (_isLayoutOutdated)
        _pause.start();
    if (_fetchAgain)
        _fetch();
    else
        _endPreparations(!failed);
}

void MenuClient::_announced(int id, const QDBusMessage &answer)
{
    const bool unchanged
            = answer.signature() == QLatin1Char('b') && !answer.arguments().at(0).toBool();
    if (unchanged && !_layout.isWaiting() && !_isLayoutOutdated) {
        const QPointer<MenuClient> self(this);
        if (!_updates.isEmpty())
            _update();
        if (self)
            Q_EMIT prepared(id, true);
        return;
    }
    _awaitingLayout.insert(id);
    _fetch();
}

void MenuClient::_endPreparations(bool ok)
{
    QSet<int> ids = std::exchange(_awaitingLayout, {});
    if (!ok)
        ids += std::exchange(_announcing, {});
    const QPointer<MenuClient> self(this);
    for (int id : std::as_const(ids)) {
        if (self)
            Q_EMIT prepared(id, ok);
    }
}

void MenuClient::_expectAnswer()
{
    if (!_patience.isActive())
        _patience.start();
}

void MenuClient::_miss()
{
    const QPointer<MenuClient> self(this);
    _setResponds(false);
    if (self)
        _endPreparations(false);
}

void MenuClient::_hear(const QDBusMessage &answer)
{
    if (_layout.isWaiting() || !_announcing.isEmpty())
        _patience.start();
    else
        _patience.stop();
    if (answer.type() == QDBusMessage::ReplyMessage)
        _setResponds(true);
}

void MenuClient::_setResponds(bool responds)
{
    if (std::exchange(_responds, responds) != responds)
        Q_EMIT respondsChanged();
}

} // namespace quorvane
