#include "menuclient.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <limits>
#include <utility>

namespace {

constexpr int updateDelay = 50;
constexpr int patience = 3000;
constexpr int maximalPath = 1000;
// Some programs don't answer this call at all; the layout may be asked for all the same.
constexpr int announcementTimeout = patience / 2;
// The bus answers for who is gone, so every call ends. One that is stopped answers when it goes on.
constexpr int noTimeout = std::numeric_limits<int>::max();

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

    auto *watcher = new QDBusServiceWatcher(service, _bus, QDBusServiceWatcher::WatchForOwnerChange,
                                            this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &now) { _ownerChanged(now); });

    const auto follow = [this](const char *signal, const char *slot) {
        _bus.connect(_service, _path, menuInterface(), QLatin1String(signal), this, slot);
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
    _announced.insert(id);
    QDBusMessage message = _method(menuInterface(), QStringLiteral("AboutToShow"));
    _call(message << id, announcementTimeout, [this, id](const QDBusMessage &answer) {
        if (!_announced.remove(id)) // Given up.
            return;
        const bool unchanged
                = answer.signature() == QLatin1Char('b') && !answer.arguments().at(0).toBool();
        if (unchanged && !_fetching && !_update.isActive()) {
            Q_EMIT prepared(id, true);
            return;
        }
        _awaitingLayout.insert(id);
        _fetch();
    });
}

void MenuClient::sendEvent(int id, const QString &event)
{
    const QVariant noData = QVariant::fromValue(QDBusVariant(0));
    constexpr uint noTime = 0;
    _bus.send(_method(menuInterface(), QStringLiteral("Event")) << id << event << noData << noTime);
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
    QDBusMessage message
            = _method(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    _call(message << menuInterface() << QStringLiteral("IconThemePath"), noTimeout,
          [this](const QDBusMessage &answer) {
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
    constexpr int root = 0;
    constexpr int allLevels = -1;
    const QStringList allProperties;
    QDBusMessage message = _method(menuInterface(), QStringLiteral("GetLayout"));
    _call(message << root << allLevels << allProperties, noTimeout,
          [this](const QDBusMessage &answer) { _fetched(answer); });
}

void MenuClient::_fetched(const QDBusMessage &answer)
{
    _fetching = false;
    _loaded = true;
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

void MenuClient::_endPreparations(bool ok)
{
    QSet<int> ids = std::exchange(_awaitingLayout, {});
    if (!ok)
        ids += std::exchange(_announced, {});
    for (int id : qAsConst(ids))
        Q_EMIT prepared(id, ok);
}

void MenuClient::_setResponds(bool responds)
{
    if (std::exchange(_responds, responds) != responds)
        Q_EMIT respondsChanged();
}

QDBusMessage MenuClient::_method(const QString &interface, const QString &name) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(_service, _path, interface, name);
    message.setAutoStartService(false);
    return message;
}

void MenuClient::_call(const QDBusMessage &message, int timeout,
                       const std::function<void(const QDBusMessage &)> &answered)
{
    if (_unanswered++ == 0)
        _patience.start();
    auto *watcher = new QDBusPendingCallWatcher(_bus.asyncCall(message, timeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answered] {
        watcher->deleteLater();
        if (--_unanswered == 0)
            _patience.stop();
        const QDBusMessage answer = watcher->reply();
        if (answer.type() == QDBusMessage::ReplyMessage) {
            if (_unanswered > 0)
                _patience.start();
            _setResponds(true);
        }
        answered(answer);
    });
}
