#include "trayitems_p.h"

#include <quorvaneshell/bus/asynccall_p.h>

#include <QPointer>

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

constexpr int mostOfOne = 64;
constexpr int most = 500;
constexpr int mostWaiting = 5000;

} // namespace

TrayItems::TrayItems(QObject *parent)
    : QObject(parent)
{
    connect(&_names, &BusNames::ownerKnown, this, &TrayItems::_hear);
}

QVector<TrayAddress> TrayItems::items() const
{
    QVector<TrayAddress> items;
    for (const Entry &entry : _entries) {
        if (entry.isThere && !items.contains(entry.item))
            items += entry.item;
    }
    return items;
}

bool TrayItems::contains(const TrayAddress &item) const
{
    return std::any_of(_entries.cbegin(), _entries.cend(),
                       [&item](const Entry &entry) { return entry.isThere && entry.item == item; });
}

bool TrayItems::hasRoomFor(const QString &client) const
{
    return _numberOf(client) < mostOfOne;
}

void TrayItems::add(const TrayAddress &item, const QString &client)
{
    const Entry entry { item, client };
    if (!item.isValid() || item.service == BusNames::ofBus() || _find(entry) >= 0
        || !hasRoomFor(_program(entry)))
        return;
    _entries.append(entry);
    _names.follow(item.service);
    if (!client.isEmpty())
        _names.follow(client);
    const QPointer<TrayItems> self(this);
    _keepWithinBounds();
    if (self && !owner(item).isEmpty())
        _confirm(entry);
}

void TrayItems::remove(const TrayAddress &item)
{
    QVector<Entry> left;
    for (const Entry &entry : std::as_const(_entries)) {
        if (entry.item == item)
            left += entry;
    }
    _leave(left);
}

void TrayItems::_hear(const QString &name, const QString &owner)
{
    QVector<Entry> left;
    QVector<Entry> confirmed;
    for (const Entry &entry : std::as_const(_entries)) {
        const bool isOfName = entry.item.service == name;
        if (owner.isEmpty() ? isOfName || entry.client == name : isOfName && entry.isThere)
            left += entry;
        else if (isOfName && !owner.isEmpty())
            confirmed += entry;
    }
    const QPointer<TrayItems> self(this);
    _leave(left);
    for (const Entry &entry : std::as_const(confirmed)) {
        if (self)
            _confirm(entry);
    }
}

// Nobody lists what is another's.
void TrayItems::_confirm(const Entry &entry)
{
    const QString owner = this->owner(entry.item);
    if (entry.client.isEmpty() || entry.client == owner)
        _setThere(entry, true);
    else
        whenComparedProcesses(entry.client, owner, this,
                              [this, entry](bool isSame) { _setThere(entry, isSame); });
}

void TrayItems::_setThere(const Entry &entry, bool isThere)
{
    if (!isThere) {
        _leave({ entry });
        return;
    }
    const bool isNew = !contains(entry.item);
    const int index = _find(entry);
    if (index < 0)
        return;
    _entries[index].isThere = true;
    const QPointer<TrayItems> self(this);
    _keepWithinBounds(); // Now that it is known whose it is.
    if (self && isNew && contains(entry.item))
        Q_EMIT added(entry.item);
}

// One came in, so one goes at most: the newest of the program that has most.
void TrayItems::_keepWithinBounds()
{
    QHash<QString, int> numbers;
    int largest = 0;
    for (const Entry &entry : std::as_const(_entries))
        largest = std::max(largest, ++numbers[_program(entry)]);
    if (largest <= mostOfOne && _entries.size() <= most)
        return;
    const auto excess = std::find_if(_entries.crbegin(), _entries.crend(), [&](const Entry &entry) {
        return numbers.value(_program(entry)) == largest;
    });
    const QVector<Entry> left { *excess };
    if (largest <= mostOfOne && _waiting.size() < mostWaiting)
        _waiting.enqueue(left.first());
    _leave(left);
}

void TrayItems::_leave(const QVector<Entry> &entries)
{
    QVector<TrayAddress> gone;
    for (const Entry &entry : entries) {
        const int index = _find(entry);
        if (index < 0)
            continue;
        const bool wasThere = _entries.takeAt(index).isThere;
        _names.unfollow(entry.item.service);
        if (!entry.client.isEmpty())
            _names.unfollow(entry.client);
        if (wasThere && !contains(entry.item))
            gone += entry.item;
    }
    // Later, as what waits was left out to make room.
    if (!_waiting.isEmpty() && !entries.isEmpty())
        QMetaObject::invokeMethod(this, &TrayItems::_fillUp, Qt::QueuedConnection);
    const QPointer<TrayItems> self(this);
    for (const TrayAddress &item : std::as_const(gone)) {
        if (self)
            Q_EMIT removed(item);
    }
}

void TrayItems::_fillUp()
{
    if (_waiting.isEmpty() || _entries.size() >= most)
        return;
    // What comes next comes after it.
    QMetaObject::invokeMethod(this, &TrayItems::_fillUp, Qt::QueuedConnection);
    const Entry entry = _waiting.dequeue();
    add(entry.item, entry.client);
}

int TrayItems::_find(const Entry &entry) const
{
    const auto found
            = std::find_if(_entries.cbegin(), _entries.cend(), [&entry](const Entry &each) {
                  return each.item == entry.item && each.client == entry.client;
              });
    return found == _entries.cend() ? -1 : int(found - _entries.cbegin());
}

// Whose share an item takes: that of who registered it, or else of its owner, once that is known.
QString TrayItems::_program(const Entry &entry) const
{
    const QString owner = this->owner(entry.item);
    return !entry.client.isEmpty() ? entry.client : owner.isEmpty() ? entry.item.service : owner;
}

int TrayItems::_numberOf(const QString &program) const
{
    return int(std::count_if(_entries.cbegin(), _entries.cend(),
                             [&](const Entry &entry) { return _program(entry) == program; }));
}

} // namespace quorvane
