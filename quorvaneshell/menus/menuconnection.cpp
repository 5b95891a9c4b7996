#include "menuconnection_p.h"

#include <quorvaneshell/bus/validnames_p.h>

namespace quorvane {

MenuConnection::MenuConnection(QObject *owner)
    : _owner(owner)
{
    _renewing.setSingleShot(true);
    _renewing.setInterval(0);
    connect(&_renewing, &QTimer::timeout, this, &MenuConnection::_renew);
}

bool MenuConnection::setService(const QString &service)
{
    return _set(&_service, service);
}

bool MenuConnection::setPath(const QString &path)
{
    return _set(&_path, path);
}

void MenuConnection::renew()
{
    _renewing.start();
}

bool MenuConnection::isLoading() const
{
    return _renewing.isActive() || (_client && !_client->isLoaded());
}

bool MenuConnection::responds() const
{
    return !_client || _client->responds();
}

QString MenuConnection::themePath() const
{
    return _client ? _client->themePath() : QString();
}

void MenuConnection::prepare(int id)
{
    if (_client)
        _client->prepare(id);
}

void MenuConnection::sendEvent(int id, const QString &event)
{
    if (_client)
        _client->sendEvent(id, event);
}

void MenuConnection::_renew()
{
    const QPointer<MenuConnection> self(this);
    Q_EMIT left();
    if (!self)
        return;
    if (_client) {
        _client->disconnect(this);
        _client->deleteLater();
        _client.clear();
    }
    if (isBusName(_service) && isObjectPath(_path)) {
        _client = new MenuClient(_service, _path, _owner);
        connect(_client, &MenuClient::layoutReceived, this, &MenuConnection::layoutReceived);
        connect(_client, &MenuClient::propertiesReceived, this, &MenuConnection::propertiesReceived);
        connect(_client, &MenuClient::themePathChanged, this, &MenuConnection::themePathChanged);
        connect(_client, &MenuClient::respondsChanged, this, &MenuConnection::respondsChanged);
        connect(_client, &MenuClient::prepared, this, &MenuConnection::prepared);
        connect(_client, &MenuClient::activationRequested, this,
                &MenuConnection::activationRequested);
    }
    Q_EMIT renewed();
}

bool MenuConnection::_set(QString *name, const QString &value)
{
    if (*name == value)
        return false;
    *name = value;
    _renewing.start();
    return true;
}

} // namespace quorvane
