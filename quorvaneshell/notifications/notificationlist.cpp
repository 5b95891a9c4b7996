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

std::shared_ptr<const Notification> readPost(const NotificationPost &post)
{
    auto notification = std::make_shared<Notification>(post);
    if (post.timeout > 0 && !notification->isCritical())
        notification->deadline = QDeadlineTimer(post.timeout, Qt::PreciseTimer);
    return notification;
}

} // namespace

// Ids begin anywhere, so that a number which a program kept from an earlier service, or thought of
// itself, is nobody else's.
NotificationList::NotificationList()
    : _lastId(QRandomGenerator::global()->bounded(1U << 30))
{
    _timer.setSingleShot(true);
    _timer.setTimerType(Qt::PreciseTimer);
    connect(&_timer, &QTimer::timeout, this, &NotificationList::_expire);
}

NotificationList::~NotificationList() = default;

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
        if (row < 0)
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

QList<uint> NotificationList::pending()
{
    _show();
    QList<uint> ids;
    for (const NotificationRow &notification : _rows)
        ids += notification->id;
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
        if (row < 0) {
            fresh.push_back(readPost(post));
            _events.push_back({ &NotificationList::posted, post.id });
        } else {
            _rows[size_t(row)] = readPost(post);
            replacements.push_back({ &NotificationList::replaced, post.id });
        }
    }
    _events.insert(_events.end(), replacements.begin(), replacements.end());
    _changed = _changed || !fresh.empty() || !replacements.empty();
    _rows.insert(_rows.begin(), fresh.rbegin(), fresh.rend());
    _closeSurplus();
    if (!_changed)
        return;
    _dropPictures();
    _startTimer();
    _readPicture();
}

void NotificationList::_remove(int first, int last, uint reason)
{
    for (int row = first; row <= last; ++row) {
        const Notification &notification = *_rows.at(size_t(row));
        _events.push_back({ nullptr, notification.id, reason });
        Q_EMIT ended(notification.sender, notification.id, reason);
    }
    if (first > last)
        return;
    _rows.erase(_rows.begin() + first, _rows.begin() + last + 1);
    _changed = true;
}

void NotificationList::_closeSurplus()
{
    _remove(_limit, int(_rows.size()) - 1, Undefined);
}

// Of all pictures those stay that are newest.
void NotificationList::_dropPictures()
{
    qint64 size = 0;
    for (NotificationRow &row : _rows) {
        size += row->pictureSize();
        if (row->pictureSize() == 0 || size <= mostPictures)
            continue;
        auto without = std::make_shared<Notification>(*row);
        without->dropPicture();
        row = without;
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

void NotificationList::_expire()
{
    _show(); // What waits may bring another time-out.
    for (int row = int(_rows.size()) - 1; row >= 0; --row) {
        if (_rows.at(size_t(row))->deadline.hasExpired())
            _remove(row, row, Expired);
    }
    _startTimer();
    _tell();
}

// One timer for all: it runs out at the next deadline.
void NotificationList::_startTimer()
{
    QDeadlineTimer next = QDeadlineTimer::Forever;
    for (const NotificationRow &notification : _rows)
        next = qMin(next, notification->deadline);
    if (next.isForever())
        _timer.stop();
    else
        _timer.start(int(next.remainingTime()));
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
    const auto row = std::find(_rows.begin(), _rows.end(), notification);
    if (row != _rows.end()) {
        auto pictured = std::make_shared<Notification>(*notification);
        pictured->setPicture(image);
        *row = pictured;
        _changed = true;
        _dropPictures();
    }
    _readPicture();
    _tell();
}

} // namespace quorvane
