#pragma once

#include "fuzz.h"

#include <QtDBus>

// A message comes in over a connection, as from a program.
class Wire : public QDBusVirtualObject
{
public:
    Wire()
    {
        connect(&_server, &QDBusServer::newConnection, this,
                [this](QDBusConnection end) { _isUp = end.registerVirtualObject("/", this); });
        _sender = QDBusConnection::connectToPeer(_server.address(), "sender");
        while (!_isUp)
            QCoreApplication::processEvents();
    }
    QDBusMessage send(const QVariantList &arguments)
    {
        QDBusMessage message = QDBusMessage::createMethodCall({}, "/", {}, "Take");
        message.setArguments(arguments);
        _received = {};
        require(_sender.send(message));
        while (_received.type() == QDBusMessage::InvalidMessage)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return _received;
    }
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        _received = message;
        return true;
    }

private:
    QDBusServer _server;
    QDBusConnection _sender { QString() };
    QDBusMessage _received;
    bool _isUp = false;
};
