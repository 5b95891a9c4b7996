#include "notificationlist_p.h"

#include <quorvaneshell/pictures/picturereader_p.h>

#include <QCoreApplication>
#include <QPointer>
#include <QRandomGenerator>
#include <QRunnable>
#include <QThreadPool>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int pictureSide = 320;
constexpr qint64 mostPictures = 32LL * 1024 * 1024;

const NotificationPost &value(const NotificationPost &post)
{
    return post;
}

const Notification &value(const NotificationRow &row)
{
    return *row;
}

QString tagOf(const NotificationPost &post)
{
    return post.stackTag();
}

QString tagOf(const NotificationRow &row)
{
    return row->stackTag;
}

template<typename Pending>
auto findId(Pending &pending, uint id)
{
    return std::find_if(pending.begin(), pending.end(),
                        [id](const auto &one) { return value(one).id == id; });
}

// The id of what a post replaces, 0 for none. The number in a post is an id, or else one that a
// program thought of and has used before; without a number there may be a tag.
template<typename Pending>
uint replacedId(const Pending &pending, const NotificationPost &post, const QString &tag)
{
    const auto found = std::find_if(pending.begin(), pending.end(), [&](const auto &one) {
        const bool sameProgram = value(one).appName == post.appName;
        if (post.replacesId == 0)
            return sameProgram && tagOf(one) == tag;
        return value(one).id == post.replacesId
               || (sameProgram && value(one).replacesId == post.replacesId);
    });
    return found == pending.end() ? 0 : value(*found).id;
}

// The id of what a program calls by a number of its own; 0 for none.
template<typename Pending>
uint ownId(const Pending &pending, const QString &sender, uint number)
{
    const auto found = std::find_if(pending.begin(), pending.end(), [&](const auto &one) {
        return value(one).replacesId == number && value(one).sender == sender;
    });
    return found == pending.end() ? 0 : value(*found).id;
}

bool isAnswerable(const NotificationRow &row)
{
    return row->expired && !row->actions.isEmpty();
}

} // namespace

// Ids begin anywhere, so that a number which a program kept from an earlier service, or thought of
// itself, is nobody else's.
NotificationList::NotificationList()
    : _lastId(QRandomGenerator::global()->bounded(1U << 30))
{
    connect(&_times, &Countdowns::over, this, &NotificationList::_expireOver);
    connect(&_answerers, &BusNames::ownerKnown, this,
            [this](const QString &sender, const QString &owner) {
                if (owner.isEmpty())
                    _forgetActions(sender);
            });
}

NotificationList::~NotificationList() = default;

NotificationRow NotificationList::find(uint id) const
{
    const auto found = findId(_rows, id);
    return found == _rows.end() ? nullptr : *found;
}

void NotificationList::setLimit(int limit)
{
    _limit = limit;
    _show();
    _tell();
}

uint NotificationList::post(NotificationPost post)
{
    post.shorten();
    const uint id = post.id = _idFor(post);
    const auto waiting = findId(_waiting, id);
    if (waiting != _waiting.end()) {
        *waiting = std::move(post);
        return id;
    }
    if (_waiting.empty()) {
        QMetaObject::invokeMethod(
                this,
                [this] {
                    _show();
                    _tell();
                },
                Qt::QueuedConnection);
    }
    _waiting.push_back(std::move(post));
    if (int(_waiting.size()) > _limit)
        close(_waiting.front().id, Undefined);
    return id;
}

void NotificationList::close(uint id, uint reason)
{
    const auto waiting = findId(_waiting, id);
    const int row = _rowOf(id);
    if (waiting != _waiting.end()) {
        const QString sender = waiting->sender;
        _waiting.erase(waiting);
        if (row < 0 || _rows.at(size_t(row))->expired)
            Q_EMIT ended(sender, id, reason);
    }
    if (row >= 0)
        _remove(row, row, reason);
    _tell();
}

void NotificationList::closeFor(const QString &sender, uint number)
{
    uint id = number;
    if (number != 0 && _rowOf(id) < 0 && findId(_waiting, id) == _waiting.end()) {
        id = ownId(_waiting, sender, number);
        if (id == 0)
            id = ownId(_rows, sender, number);
    }
    close(id, Closed);
}

void NotificationList::invoke(uint id, const QString &action)
{
    _show();
    const int row = _rowOf(id);
    const NotificationRow notification = row < 0 ? nullptr : _rows.at(size_t(row));
    if (notification && notification->offers(action)) {
        Q_EMIT invoked(notification->sender, id, action);
        if (!notification->resident)
            _remove(row, row, Dismissed);
    }
    _tell();
}

void NotificationList::clear()
{
    _show();
    _remove(0, int(_rows.size()) - 1, Dismissed);
    _tell();
}

void NotificationList::expire(uint id)
{
    _show();
    const int row = _rowOf(id);
    if (row >= 0)
        _expireRow(row);
    _tell();
}

bool NotificationList::hold(uint id)
{
    if (_rowOf(id) < 0)
        return false;
    _times.hold(id);
    return true;
}

void NotificationList::release(uint id)
{
    _times.release(id);
}

void NotificationList::markRead(uint id)
{
    const int row = _rowOf(id);
    if (row >= 0 && _rows.at(size_t(row))->unread)
        _change(row, [](Notification *notification) { notification->unread = false; });
    _tell();
}

void NotificationList::markAllRead()
{
    for (int row = 0; row < int(_rows.size()); ++row) {
        if (_rows.at(size_t(row))->unread)
            _change(row, [](Notification *notification) { notification->unread = false; });
    }
    _tell();
}

QList<uint> NotificationList::pending()
{
    _show();
    QList<uint> ids;
    for (const NotificationRow &notification : _rows) {
        if (!notification->expired)
            ids += notification->id;
    }
    std::sort(ids.begin(), ids.end());
    _tell();
    return ids;
}

QStringList NotificationList::actionsOf(uint id)
{
    _show();
    const int row = _rowOf(id);
    const QStringList actions = row < 0 ? QStringList() : _rows.at(size_t(row))->actions;
    _tell();
    return actions;
}

uint NotificationList::_idFor(const NotificationPost &post)
{
    const QString tag = post.stackTag();
    if (post.replacesId != 0 || !tag.isEmpty()) {
        const uint waiting = replacedId(_waiting, post, tag);
        const uint id = waiting != 0 ? waiting : replacedId(_rows, post, tag);
        if (id != 0)
            return id;
    }
    do
        ++_lastId;
    while (_lastId == 0 || _rowOf(_lastId) >= 0 || findId(_waiting, _lastId) != _waiting.end());
    return _lastId;
}

int NotificationList::_rowOf(uint id) const
{
    const auto found = findId(_rows, id);
    return found == _rows.end() ? -1 : int(found - _rows.begin());
}

// Puts what waits into the list: what is new in front, what replaces in its place.
void NotificationList::_show()
{
    NotificationRows fresh;
    std::deque<Event> replacements;
    for (const NotificationPost &post : std::exchange(_waiting, {})) {
        const int row = _rowOf(post.id);
        const auto notification = std::make_shared<Notification>(post);
        if (row < 0) {
            fresh.push_back(notification);
            _events.push_back({ &NotificationList::posted, post.id });
        } else {
            _unfollow(std::exchange(_rows[size_t(row)], notification));
            replacements.push_back({ &NotificationList::replaced, post.id });
        }
        _times.start(post.id, notification->timeout);
    }
    _events.insert(_events.end(), replacements.begin(), replacements.end());
    _changed = _changed || !fresh.empty() || !replacements.empty();
    _rows.insert(_rows.begin(), fresh.rbegin(), fresh.rend());
    _closeSurplus();
    if (!_changed)
        return;
    _dropPictures();
    _readPicture();
}

void NotificationList::_remove(int first, int last, uint reason)
{
    for (int row = first; row <= last; ++row) {
        const NotificationRow notification = _rows.at(size_t(row));
        _times.remove(notification->id);
        _unfollow(notification);
        _events.push_back({ nullptr, notification->id, reason });
        if (!notification->expired)
            Q_EMIT ended(notification->sender, notification->id, reason);
    }
    if (first > last)
        return;
    _rows.erase(_rows.begin() + first, _rows.begin() + last + 1);
    _changed = true;
}

template<typename Change>
void NotificationList::_change(int row, const Change &change)
{
    auto changed = std::make_shared<Notification>(*_rows.at(size_t(row)));
    change(changed.get());
    _rows[size_t(row)] = changed;
    _changed = true;
}

// Its program forgets it, so that nobody would hear of an answer, but for a resident one.
void NotificationList::_expireRow(int row)
{
    const NotificationRow notification = _rows.at(size_t(row));
    if (notification->expired)
        return;
    if (!_keepsExpired || notification->isTransient)
        return _remove(row, row, Expired);
    _times.start(notification->id, 0);
    _change(row, [](Notification *expired) {
        expired->expired = true;
        if (!expired->resident || expired->sender.isEmpty())
            expired->actions.clear();
    });
    if (isAnswerable(_rows.at(size_t(row))))
        _answerers.follow(notification->sender);
    _events.push_back({ &NotificationList::expired, notification->id });
    Q_EMIT ended(notification->sender, notification->id, Expired);
}

void NotificationList::_unfollow(const NotificationRow &notification)
{
    if (isAnswerable(notification))
        _answerers.unfollow(notification->sender);
}

void NotificationList::_forgetActions(const QString &sender)
{
    for (int row = 0; row < int(_rows.size()); ++row) {
        const NotificationRow notification = _rows.at(size_t(row));
        if (notification->sender != sender || !isAnswerable(notification))
            continue;
        _unfollow(notification);
        _change(row, [](Notification *expired) { expired->actions.clear(); });
    }
    _tell();
}

// What has expired goes before what is pending.
void NotificationList::_closeSurplus()
{
    for (int row = int(_rows.size()) - 1; row >= 0 && int(_rows.size()) > _limit; --row) {
        if (_rows.at(size_t(row))->expired)
            _remove(row, row, Undefined);
    }
    _remove(_limit, int(_rows.size()) - 1, Undefined);
}

// Of all pictures those stay that are newest.
void NotificationList::_dropPictures()
{
    qint64 size = 0;
    for (int row = 0; row < int(_rows.size()); ++row) {
        const qint64 pictureSize = _rows.at(size_t(row))->pictureSize();
        size += pictureSize;
        if (pictureSize > 0 && size > mostPictures)
            _change(row, [](Notification *notification) { notification->dropPicture(); });
    }
}

void NotificationList::_tell()
{
    const QPointer<NotificationList> alive(this);
    const bool nested = std::exchange(_telling, true);
    if (std::exchange(_changed, false))
        Q_EMIT rowsChanged();
    if (nested)
        return;
    while (alive && !_events.empty()) {
        const Event event = _events.front();
        _events.pop_front();
        if (event.signal)
            Q_EMIT(this->*event.signal)(event.id);
        else
            Q_EMIT closed(event.id, event.reason);
    }
    if (alive)
        _telling = false;
}

void NotificationList::_expireOver()
{
    _show(); // What waits may bring another time-out.
    const QSet<uint> over = _times.takeOver();
    for (int row = int(_rows.size()) - 1; row >= 0; --row) {
        if (over.contains(_rows.at(size_t(row))->id))
            _expireRow(row);
    }
    _tell();
}

// Programs delete their files soon. One is read at a time, the newest first, and by then those that
// were closed or replaced are no longer asked for.
void NotificationList::_readPicture()
{
    const auto found
            = std::find_if(_rows.cbegin(), _rows.cend(), [](const NotificationRow &notification) {
                  return !notification->pictureFile().isEmpty();
              });
    if (_reading || found == _rows.cend())
        return;
    _reading = true;
    const QPointer<NotificationList> list(this);
    auto *reader = QRunnable::create([list, notification = *found] {
        const QImage image
                = readPictureFile(notification->pictureFile(), { pictureSide, pictureSide });
        QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [list, notification, image] {
                    if (list)
                        list->_setPicture(notification, image);
                },
                Qt::QueuedConnection);
    });
    QThreadPool::globalInstance()->start(reader);
}

void NotificationList::_setPicture(const NotificationRow &notification, const QImage &image)
{
    _reading = false;
    const int row = _rowOf(notification->id);
    if (row >= 0 && _rows.at(size_t(row))->isOfPost(*notification)) {
        _change(row, [&image](Notification *pictured) { pictured->setPicture(image); });
        _dropPictures();
    }
    _readPicture();
    _tell();
}

} // namespace quorvane
