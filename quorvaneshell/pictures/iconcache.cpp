#include "iconcache_p.h"

#include "iconreader_p.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QIcon>
#include <QSemaphore>

#include <utility>

namespace quorvane {

namespace {

constexpr int mostReadings = 1000;
constexpr int missingFor = 2000; // Milliseconds.
constexpr qint64 mostBytes = 64 << 20;
constexpr int regainedIn = 5; // Times as long as it took to spend it.

IconSource parsed(const IconRequest &request)
{
    IconSource source = IconSource::of(request.source);
    if (!request.label.isEmpty())
        source.label = request.label;
    if (request.color.isValid())
        source.color = request.color;
    return source;
}

} // namespace

bool operator==(const IconKey &one, const IconKey &other)
{
    return one.size == other.size && one.request.source == other.request.source
           && one.request.label == other.request.label && one.request.color == other.request.color;
}

int Patience::left() const
{
    constexpr qint64 forOne = 30'000; // Microseconds.
    constexpr qint64 forAll = 100'000;
    const qint64 owed = qMax(Q_INT64_C(0), _regainedAt - _now()) / regainedIn;
    return int(qBound(Q_INT64_C(0), forAll - owed, forOne) / 1000);
}

void Patience::spend(qint64 microseconds)
{
    _regainedAt = qMax(_regainedAt, _now()) + regainedIn * microseconds;
}

qint64 Patience::_now() const
{
    return _clock.nsecsElapsed() / 1000;
}

// A picture on its way. The thread writes the picture, then the GUI thread has all of it.
struct IconCache::Reading
{
    IconKey key;
    IconPicture picture;
    QSemaphore isRead;
};

IconCache::IconCache()
    : _entries(int(mostBytes))
{
}

IconCache &IconCache::instance()
{
    static auto *const cache = [] {
        // Pixmaps need an application.
        qAddPostRoutine([] { instance()._entries.clear(); });
        return new IconCache;
    }();
    return *cache;
}

QPixmap IconCache::picture(const IconRequest &request, const QSize &size)
{
    _followThemes();
    const IconKey key { request, size };
    const Entry *entry = _entries.object(key);
    if (entry && (entry->isFinal || !entry->staysFor.hasExpired()))
        return entry->pixmap;
    const QPixmap before = entry ? entry->pixmap : QPixmap();
    const std::shared_ptr<Reading> reading = _read(key);
    if (!before.isNull()) // It comes late anyhow.
        return before;
    if (reading && _waitFor(*reading))
        return _take(*reading);
    const QPixmap standIn = QPixmap::fromImage(iconStandIn(parsed(request), size));
    _keep(key, standIn, false);
    return standIn;
}

void IconCache::_followThemes()
{
    const QVector<QStringList> choice { { QIcon::themeName(), QIcon::fallbackThemeName() },
                                        QIcon::themeSearchPaths(),
                                        QIcon::fallbackSearchPaths() };
    if (choice == _choice)
        return;
    _choice = choice;
    _themes = IconThemes::ofApplication();
    _entries.clear();
    _readings.clear(); // What still comes is of another theme.
}

// Null for a picture that is on its way already, and while very many are.
std::shared_ptr<IconCache::Reading> IconCache::_read(const IconKey &key)
{
    if (_readings.contains(key) || _readings.size() >= mostReadings)
        return {};
    const auto reading = std::make_shared<Reading>();
    reading->key = key;
    _readings.insert(key, reading);
    const auto take = [this, reading](const IconPicture &picture) {
        reading->picture = picture;
        reading->isRead.release();
        QMetaObject::invokeMethod(
                this, [this, reading] { _takeLate(reading); }, Qt::QueuedConnection);
    };
    readIconInThread(parsed(key.request), key.size, _themes, take, true);
    return reading;
}

bool IconCache::_waitFor(Reading &reading)
{
    QElapsedTimer clock;
    clock.start();
    const bool isRead = reading.isRead.tryAcquire(1, _patience.left());
    _patience.spend(clock.nsecsElapsed() / 1000);
    return isRead;
}

QPixmap IconCache::_take(const Reading &reading)
{
    const QPixmap pixmap = QPixmap::fromImage(reading.picture.image);
    const IconKey key = reading.key;
    _keep(key, pixmap, !reading.picture.isMissing);
    _readings.remove(key);
    return pixmap;
}

void IconCache::_takeLate(const std::shared_ptr<Reading> &reading)
{
    if (_readings.value(reading->key) != reading)
        return;
    _take(*reading);
    if (reading->picture.isMissing) // So it is shown already.
        return;
    if (_late.isEmpty())
        QMetaObject::invokeMethod(
                this, [this] { Q_EMIT iconsRead(std::exchange(_late, {})); }, Qt::QueuedConnection);
    _late += reading->key.request.source;
}

void IconCache::_keep(const IconKey &key, const QPixmap &pixmap, bool isFinal)
{
    const qint64 bytes = qint64(4) * pixmap.width() * pixmap.height();
    // Whatever is painted is kept, or what comes late would come again with each painting.
    _entries.insert(key, new Entry { pixmap, isFinal, QDeadlineTimer(missingFor) },
                    int(qMin(bytes, mostBytes)));
}

} // namespace quorvane
