#include "menuclient.h"

#include "asynccall.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

namespace {

constexpr int updateDelay = 50;
constexpr int patience = 3000;
constexpr int maximalPath = 1000;

QString menuInterface()
{
    return QStringLiteral("com.canonical.dbusmenu");
}

} // namespace

MenuClient::MenuClient(const QString &service, const QString &path, QObject *parent)
    : QObject(parent)
    , _service(service)
    , _path(path)
{
    _update.setSingleShot(true);
    _update.setInterval(updateDelay);
    connect(&_update, &QTimer::timeout, this, [this] { _fetching ? _update.start() : _fetch(); });

    _patience.setSingleShot(true);
    _patience.setInterval(patience);
    connect(&_patience, &QTimer::timeout, this, [this] {
        _setResponds(false);
        _endPreparations(false);
    });

    QDBusConnection bus = QDBusConnection::sessionBus();
    auto *watcher
            = new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &now) { _ownerChanged(now); });

    const auto follow = [this, &bus](const char *signal, const char *slot) {
        bus.connect(_service, _path, menuInterface(), QLatin1String(signal), this, slot);
    };
    follow("LayoutUpdated", SLOT(_layoutUpdated()));
    follow("ItemsPropertiesUpdated", SLOT(_itemsPropertiesUpdated(QDBusMessage)));
    follow("ItemActivationRequested", SIGNAL(activationRequested()));
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
        _hear(answer);
        if (isAwaited)
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

void MenuClient::_layoutUpdated()
{
    if (!_update.isActive())
        _update.start();
}

void MenuClient::_itemsPropertiesUpdated(const QDBusMessage &signal)
{
    Q_EMIT propertiesReceived(readPropertyUpdates(signal));
}

void MenuClient::_ownerChanged(const QString &owner)
{
    Q_EMIT layoutReceived({});
    if (!owner.isEmpty())
        _begin();
}

void MenuClient::_begin()
{
    const auto call = callAsync(_service, _path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                QStringLiteral("Get"),
                                { menuInterface(), QStringLiteral("IconThemePath") });
    whenAnswered(call, this, [this](const QDBusMessage &answer) {
        const auto value = answer.arguments().value(0).value<QDBusVariant>();
        const QString first = value.variant().toStringList().value(0).left(maximalPath);
        if (std::exchange(_themePath, first) != first)
            Q_EMIT themePathChanged();
    });
    _fetch();
}

void MenuClient::_fetch()
{
    _fetchAgain = _fetching;
    if (_fetching)
        return;
    _fetching = true;
    _update.stop();
    _expectAnswer();
    constexpr int root = 0;
    constexpr int allLevels = -1;
    const QStringList allProperties;
    const auto call = callAsync(_service, _path, menuInterface(), QStringLiteral("GetLayout"),
                                { root, allLevels, allProperties });
    whenAnswered(call, this, [this](const QDBusMessage &answer) { _fetched(answer); });
}

void MenuClient::_fetched(const QDBusMessage &answer)
{
    _fetching = false;
    _loaded = true;
    _hear(answer);
    const bool failed = answer.type() == QDBusMessage::ErrorMessage;
    if (failed)
        _setResponds(false);
    if (QDBusError(answer).type() != QDBusError::NoReply)
        Q_EMIT layoutReceived(readLayout(answer));
    if (_fetchAgain)
        _fetch();
    else
        _endPreparations(!failed);
}

void MenuClient::_announced(int id, const QDBusMessage &answer)
{
    const bool unchanged
            = answer.signature() == QLatin1Char('b') && !answer.arguments().at(0).toBool();
    if (unchanged && !_fetching && !_update.isActive()) {
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
    for (int id : qAsConst(ids))
        Q_EMIT prepared(id, ok);
}

void MenuClient::_expectAnswer()
{
    if (!_patience.isActive())
        _patience.start();
}

void MenuClient::_hear(const QDBusMessage &answer)
{
    if (_fetching || !_announcing.isEmpty())
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
