#pragma once

#include <quorvane/quorvane_export.h>

#include <QObject>
#include <QStringList>

class QDBusServiceWatcher;

/*! \class StatusNotifierWatcherAdaptor
    \ingroup statusnotifier
    The bus interface \c org.kde.StatusNotifierWatcher of an xdg::StatusNotifierWatcher, which
    creates it. Its header is \c quorvane/statusnotifier/statusnotifierwatcheradaptor.h. */
class QUORVANE_EXPORT StatusNotifierWatcherAdaptor;

namespace xdg {

/*! \ingroup statusnotifier
    \brief The registry of the tray: which items and which hosts are on the session bus.

    One process of a session creates one watcher, before any host and any item, since both register
    once and never again. Nothing else in the library creates it. The watcher claims the bus name
    \c org.kde.StatusNotifierWatcher and publishes \c /StatusNotifierWatcher with the interface of
    the same name, the part of the StatusNotifierItem protocol that this library uses.
    StatusNotifierItem and StatusNotifierHost reach it over the bus alone, and so does any other
    program that speaks the protocol.

    An item is listed by its item id, the service name followed directly by the fixed path
    /StatusNotifierItem: the service org.quorvane.editor-4711 gives
    org.quorvane.editor-4711/StatusNotifierItem. The id is what the list and the two item signals
    carry; it is not the item's \c Id property.

    If the name has an owner already, or there is no bus, the watcher says so in a warning and stays
    inert for good: it publishes nothing, its getters answer an empty list, false and 1, and its
    registration operations do nothing. It does not take over when the other owner leaves. A second
    watcher in the process of the first gets the name too, without a message, but the bus goes on
    talking to the first. */
class QUORVANE_EXPORT StatusNotifierWatcher : public QObject
{
    Q_OBJECT
    /*! The ids of the registered items, in order of arrival. */
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ RegisteredStatusNotifierItems NOTIFY
                       RegisteredStatusNotifierItemsChanged)
    /*! Whether any host has registered. */
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ IsStatusNotifierHostRegistered NOTIFY
                       IsStatusNotifierHostRegisteredChanged)
    /*! The version of the protocol. */
    Q_PROPERTY(int ProtocolVersion READ ProtocolVersion CONSTANT)

public:
    /*! Claims the bus name and publishes the object, or becomes inert with a warning. */
    explicit StatusNotifierWatcher(QObject *parent = nullptr);

    /*! Leaves the bus name with the process's connection: it is not released. */
    ~StatusNotifierWatcher() override;

    /*! The ids of the registered items, in order of arrival. */
    QStringList RegisteredStatusNotifierItems() const;

    /*! Whether any host has registered.

        A host that registered under its plain bus name, as they usually do, is never forgotten: the
        answer stays true. It turns false only when every host had a path behind its name and has
        been noticed to leave, see StatusNotifierHostUnregistered(). */
    bool IsStatusNotifierHostRegistered() const;

    /*! Always 1. */
    int ProtocolVersion() const;

    /*! Registers the tray item at /StatusNotifierItem of the bus name \a service.

        The argument is taken as a bus name, well-known or unique, and never as an object path. The
        call waits for the bus daemon. A name without an owner and an item that is listed already
        are dropped without an error; a dropped item has to register again. Otherwise the item is
        listed, and StatusNotifierItemRegistered() is emitted. */
    void RegisterStatusNotifierItem(const QString &service);

    /*! Registers the host \a service.

        The string is stored as it comes, once, and the bus is not asked about it. No signal is
        emitted: read IsStatusNotifierHostRegistered. */
    void RegisterStatusNotifierHost(const QString &service);

Q_SIGNALS:
    /*! The item \a id was listed. Goes out on the bus. */
    void StatusNotifierItemRegistered(QString id);

    /*! The bus name of the item \a id vanished; the item has left the list. Goes out on the bus. */
    void StatusNotifierItemUnregistered(QString id);

    /*! Part of the protocol; never emitted. */
    void StatusNotifierHostRegistered();

    /*! The bus name of a host vanished. Goes out on the bus.

        Noticed are hosts that registered as the name with an object path behind it, and only if
        the plain name is watched too: because a host or an item has registered with it. */
    void StatusNotifierHostUnregistered();

    /*! Never emitted: follow the two item signals. */
    void RegisteredStatusNotifierItemsChanged();

    /*! Never emitted. */
    void IsStatusNotifierHostRegisteredChanged();

private Q_SLOTS:
    void _serviceUnregistered(QString name);

private:
    QStringList _hostServices;
    QStringList _registeredItems;
    QDBusServiceWatcher *_serviceWatcher = nullptr;
};

} // namespace xdg
