#include "busreader_p.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <dbus/dbus.h>

#include <atomic>
#include <memory>

namespace quorvane {

namespace {

constexpr long mostReceived = 8L * 1024 * 1024;

// One direction of the connection, on the thread where Qt reads and writes.
class Watch : public QObject
{
public:
    explicit Watch(DBusWatch *watch)
        : _watch(watch)
    {
        // Qt's own notifiers are gone only then, and there is to be one for each direction.
        QTimer::singleShot(0, this, [this] {
            _makeNotifier();
            update();
        });
    }

    void forget()
    {
        _watch = nullptr;
        deleteLater();
    }

    void update()
    {
        if (DBusWatch *watch = _watch; watch && _notifier)
            _notifier->setEnabled(dbus_watch_get_enabled(watch) != 0);
    }

private:
    void _makeNotifier()
    {
        DBusWatch *watch = _watch;
        if (!watch)
            return;
        const unsigned int direction = dbus_watch_get_flags(watch) & DBUS_WATCH_READABLE
                                               ? DBUS_WATCH_READABLE
                                               : DBUS_WATCH_WRITABLE;
        const auto type
                = direction == DBUS_WATCH_READABLE ? QSocketNotifier::Read : QSocketNotifier::Write;
        _notifier = std::make_unique<QSocketNotifier>(dbus_watch_get_unix_fd(watch), type);
        // Qt hears from libdbus what there is to dispatch.
        connect(_notifier.get(), &QSocketNotifier::activated, this, [this, direction] {
            if (DBusWatch *present = _watch)
                dbus_watch_handle(present, direction);
        });
    }

    std::atomic<DBusWatch *> _watch;
    std::unique_ptr<QSocketNotifier> _notifier;
};

dbus_bool_t addWatch(DBusWatch *watch, void *)
{
    dbus_watch_set_data(watch, new Watch(watch), nullptr);
    return TRUE;
}

void removeWatch(DBusWatch *watch, void *)
{
    if (auto *ours = static_cast<Watch *>(dbus_watch_get_data(watch)))
        ours->forget();
    dbus_watch_set_data(watch, nullptr, nullptr);
}

// On any thread, and at once on the right one.
void toggleWatch(DBusWatch *watch, void *)
{
    if (auto *ours = static_cast<Watch *>(dbus_watch_get_data(watch)))
        QMetaObject::invokeMethod(ours, &Watch::update);
}

// Filters are called on the thread where Qt reads, where its watches may be taken away.
DBusHandlerResult takeOver(DBusConnection *connection, DBusMessage *, void *)
{
    dbus_connection_remove_filter(connection, takeOver, nullptr);
    dbus_connection_set_watch_functions(connection, addWatch, removeWatch, toggleWatch, nullptr,
                                        nullptr);
    dbus_connection_set_max_received_size(connection, mostReceived);
    return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
}

} // namespace

void keepReadingSessionBus()
{
    static bool called = false;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (called || !bus.isConnected())
        return;
    called = true;
    auto *connection = static_cast<DBusConnection *>(bus.internalPointer());
    if (!dbus_connection_add_filter(connection, takeOver, nullptr, nullptr))
        return;
    // Any message calls the filter, such as this one to the process itself.
    bus.send(QDBusMessage::createTargetedSignal(bus.baseService(), QStringLiteral("/"),
                                                QStringLiteral("org.quorvane.BusReader"),
                                                QStringLiteral("Started")));
}

} // namespace quorvane
