#include "busnames_p.h"

#include "asynccall_p.h"

#include <QDBusConnection>

namespace quorvane {

BusNames::BusNames(QObject *parent)
    : QObject(parent)
    , _watcher(QString(), QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
{
    // Of the signals of one change the last: Qt uses its watcher between them, which may have gone.
    connect(&_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &name, const QString &before, const QString &owner) {
                _comer = owner;
                if (!before.isEmpty() && !owner.isEmpty())
                    _set(name, owner);
            });
    connect(&_watcher, &QDBusServiceWatcher::serviceRegistered, this,
            [this](const QString &name) { _set(name, _comer); });
    connect(&_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString &name) { _set(name, {}); });
}

QString BusNames::ofBus()
{
    return QStringLiteral("org.freedesktop.DBus");
}

void BusNames::follow(const QString &name)
{
    if (++_names[name].followers > 1)
        return;
    _waiting.enqueue(name);
    _askNext();
}

void BusNames::unfollow(const QString &name)
{
    const auto found = _names.find(name);
    if (found == _names.end() || --found->followers > 0)
        return;
    _names.erase(found);
    _watcher.removeWatchedService(name);
}

QString BusNames::owner(const QString &name) const
{
    return _names.value(name).owner;
}

void BusNames::_askNext()
{
    constexpr int mostAtOnce = 64;
    while (_asked < mostAtOnce && !_waiting.isEmpty()) {
        const QString name = _waiting.dequeue();
        if (!_names.contains(name))
            continue;
        ++_asked;
        // Watched first, so that a name which vanishes while the bus is asked is not missed. The
        // bus answers in order.
        _watcher.addWatchedService(name);
        whenOwnerKnown(name, this, [this, name](const QString &owner) {
            --_asked;
            _askNext();
            _set(name, owner);
        });
    }
}

void BusNames::_set(const QString &name, const QString &owner)
{
    const auto found = _names.find(name);
    if (found == _names.end() || (found->isKnown && found->owner == owner))
        return;
    found->isKnown = true;
    found->owner = owner;
    Q_EMIT ownerKnown(name, owner);
}

} // namespace quorvane
