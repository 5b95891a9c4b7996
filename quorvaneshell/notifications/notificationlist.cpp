#include "notificationlist_p.h"

#include "notifications.h"
#include "notificationservice_p.h"
#include "pendingnotifications_p.h"

#include <quorvaneshell/bus/busreader_p.h>
#include <quorvaneshell/bus/busservice_p.h>
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

const Notification &value(const NotificationList::Row &row)
{
    return *row;
}

template<typename Pending>
auto findId(Pending &pending, uint id)
{
    return std::find_if(pending.begin(), pending.end(),
                        [id](const auto &one) { return value(one).id == id; });
}

QString tagOf(const NotificationPost &post)
{
    return post.stackTag();
}

QString tagOf(const NotificationList::Row &row)
{
    return row->stackTag;
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

} // namespace

QSharedPointer<NotificationList> NotificationList::shared()
{
    static QWeakPointer<NotificationList> made;
    QSharedPointer<NotificationList> list = made.toStrongRef();
    if (!list) {
        list.reset(new NotificationList);
        made = list;
    }
    return list;
}

// Ids begin anywhere, so that a number which a program kept from an earlier service, or thought of
// itself, is nobody else's.
NotificationList::NotificationList()
    : _lastId(QRandomGenerator::global()->bounded(1U << 30))
    , _capabilities({ QStringLiteral("actions"), QStringLiteral("body"),
                      QStringLiteral("body-hyperlinks"), QStringLiteral("body-markup"),
                      QStringLiteral("icon-static"), QStringLiteral("persistence") })
{
    _timer.setSingleShot(true);
    _timer.setTimerType(Qt::PreciseTimer);
    connect(&_timer, &QTimer::timeout, this, &NotificationList::_expire);

    keepReadingSessionBus();
    auto *server = new QObject(this);
    _service = new NotificationService(this, server);
    _bus = new BusService(NotificationService::name(), server, this);
    connect(_bus, &BusService::changed, this, &NotificationList::registrationChanged);
    new BusService(QStringLiteral("com.zovar.NotificationManager"), new PendingNotifications(this),
                   this);
}

NotificationList::~NotificationList() = default;

bool NotificationList::isRegistered() const
{
    return _bus->isRegistered();
}

QVariantMap NotificationList::owner() const
{
    return _bus->owner();
}

void NotificationList::setDefaultTimeout(int milliseconds)
{
    if (milliseconds == _defaultTimeout)
        return;
    _defaultTimeout = milliseconds;
    Q_EMIT defaultTimeoutChanged();
}

void NotificationList::setLimit(int limit)
{
    limit = qMax(1, limit);
    if (limit == _limit)
        return;
    const auto self = sharedFromThis();
    _limit = limit;
    _show();
    _tell();
    Q_EMIT limitChanged();
}

void NotificationList::setCapabilities(const QStringList &capabilities)
{
    if (capabilities == _capabilities)
        return;
    _capabilities = capabilities;
    Q_EMIT capabilitiesChanged();
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
        close(_waiting.front().id, Notifications::Undefined);
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
            _service->tellClosed(sender, id, reason);
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
    close(id, Notifications::Closed);
}

void NotificationList::invoke(uint id, const QString &key)
{
    _show();
    const int row = _rowOf(id);
    if (row >= 0 && _rows.at(row)->offers(key)) {
        _service->tellInvoked(_rows.at(row)->sender, id, key);
        if (!_rows.at(row)->resident)
            _remove(row, row, Notifications::Dismissed);
    }
    _tell();
}

void NotificationList::clear()
{
    _show();
    _remove(0, _rows.size() - 1, Notifications::Dismissed);
    _tell();
}

QList<uint> NotificationList::pending()
{
    _show();
    QList<uint> ids;
    for (const Row &notification : std::as_const(_rows))
        ids += notification->id;
    std::sort(ids.begin(), ids.end());
    _tell();
    return ids;
}

QStringList NotificationList::actionsOf(uint id)
{
    _show();
    const int row = _rowOf(id);
    const QStringList actions = row < 0 ? QStringList() : _rows.at(row)->actions;
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

NotificationList::Row NotificationList::_read(const NotificationPost &post) const
{
    auto notification = std::make_shared<Notification>(post);
    const int timeout = post.timeout < 0 ? _defaultTimeout : post.timeout;
    if (timeout > 0 && !notification->isCritical())
        notification->deadline = QDeadlineTimer(timeout, Qt::PreciseTimer);
    return notification;
}

// Puts what waits into the list: what is new in front, what replaces in its place.
void NotificationList::_show()
{
    QVector<Row> fresh;
    std::deque<Event> replacements;
    for (const NotificationPost &post : std::exchange(_waiting, {})) {
        const int row = _rowOf(post.id);
        if (row < 0) {
            fresh.append(_read(post));
            _events.push_back({ &NotificationList::posted, post.id });
        } else {
            _rows[row] = _read(post);
            replacements.push_back({ &NotificationList::replaced, post.id });
        }
    }
    _events.insert(_events.end(), replacements.begin(), replacements.end());
    _changed = _changed || !fresh.isEmpty() || !replacements.empty();
    std::reverse(fresh.begin(), fresh.end());
    _rows = fresh + _rows;
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
        const Notification &notification = *_rows.at(row);
        _events.push_back({ nullptr, notification.id, reason });
        _service->tellClosed(notification.sender, notification.id, reason);
    }
    if (first > last)
        return;
    _rows.remove(first, last - first + 1);
    _changed = true;
}

void NotificationList::_closeSurplus()
{
    _remove(_limit, _rows.size() - 1, Notifications::Undefined);
}

// Of all pictures those stay that are newest.
void NotificationList::_dropPictures()
{
    qint64 size = 0;
    for (Row &row : _rows) {
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
    const auto self = sharedFromThis(); // Whoever listens may let go of the last object.
    const bool nested = std::exchange(_telling, true);
    if (std::exchange(_changed, false))
        Q_EMIT rowsChanged();
    if (nested)
        return;
    while (!_events.empty()) {
        const Event event = _events.front();
        _events.pop_front();
        if (event.signal)
            Q_EMIT(this->*event.signal)(event.id);
        else
            Q_EMIT closed(event.id, event.reason);
    }
    _telling = false;
}

void NotificationList::_expire()
{
    _show(); // What waits may bring another time-out.
    for (int row = _rows.size() - 1; row >= 0; --row) {
        if (_rows.at(row)->deadline.hasExpired())
            _remove(row, row, Notifications::Expired);
    }
    _startTimer();
    _tell();
}

// One timer for all: it runs out at the next deadline.
void NotificationList::_startTimer()
{
    QDeadlineTimer next = QDeadlineTimer::Forever;
    for (const Row &notification : std::as_const(_rows))
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
    const auto found = std::find_if(_rows.cbegin(), _rows.cend(), [](const Row &notification) {
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

void NotificationList::_setPicture(const Row &notification, const QImage &image)
{
    _reading = false;
    const int row = _rows.indexOf(notification);
    if (row >= 0) {
        auto pictured = std::make_shared<Notification>(*notification);
        pictured->setPicture(image);
        _rows[row] = pictured;
        _changed = true;
        _dropPictures();
    }
    _readPicture();
    _tell();
}

} // namespace quorvane
