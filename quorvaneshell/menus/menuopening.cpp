#include "menuopening_p.h"

#include "menuconnection_p.h"

#include <QPointer>

#include <chrono>

namespace quorvane {

MenuOpening::MenuOpening(int id, MenuConnection *connection)
    : _id(id)
    , _connection(connection)
{
    constexpr std::chrono::milliseconds patience(2950); // A little longer than the client's.
    _patience.setSingleShot(true);
    _patience.setTimerType(Qt::PreciseTimer);
    _patience.setInterval(patience);
    connect(&_patience, &QTimer::timeout, this, [this] { _end(false); });
    connect(connection, &MenuConnection::prepared, this, [this](int id, bool ok) {
        if (id == _id)
            _end(ok);
    });
}

void MenuOpening::open()
{
    _isOpen = true;
    if (!_isWaiting)
        _patience.start();
    _isWaiting = true;
    if (_connection->hasClient())
        _announce();
    else
        _connection->renew();
    Q_EMIT waitingChanged();
}

void MenuOpening::close()
{
    if (!_isOpen)
        return;
    _isOpen = false;
    _isWaiting = false;
    _connection->sendEvent(_id, QStringLiteral("closed"));
    Q_EMIT waitingChanged();
}

void MenuOpening::resume()
{
    _isOpen = _isWaiting;
    if (!_isWaiting)
        return;
    if (_connection->hasClient())
        _announce();
    else
        _end(false);
}

void MenuOpening::_announce()
{
    _connection->prepare(_id);
    _connection->sendEvent(_id, QStringLiteral("opened"));
}

void MenuOpening::_end(bool ok)
{
    if (!_isWaiting)
        return;
    const QPointer<MenuOpening> self(this);
    _isWaiting = false;
    Q_EMIT waitingChanged();
    if (self && !ok)
        close();
    if (self)
        Q_EMIT ended(ok);
}

} // namespace quorvane
