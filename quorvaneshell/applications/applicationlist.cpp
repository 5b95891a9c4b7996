#include "applicationlist_p.h"

#include "applicationfolders_p.h"
#include "windowmatcher_p.h"

#include <QElapsedTimer>

namespace quorvane {

namespace {

// A package brings many files: what comes within this time is read at once.
constexpr int delay = 200;

} // namespace

QSharedPointer<ApplicationList> ApplicationList::shared()
{
    static QWeakPointer<ApplicationList> made;
    QSharedPointer<ApplicationList> list = made.toStrongRef();
    if (!list) {
        list.reset(new ApplicationList);
        made = list;
    }
    return list;
}

ApplicationList::ApplicationList()
    : _read(Read::create())
    , _folders(new ApplicationFolders(this))
{
    _timer.setSingleShot(true);
    _timer.setInterval(delay);
    connect(_folders, &ApplicationFolders::changed, this, [this] {
        if (!_timer.isActive())
            _timer.start();
    });
    connect(&_timer, &QTimer::timeout, this, &ApplicationList::_readInThread);
}

ApplicationList::~ApplicationList()
{
    _ending = true;
}

void ApplicationList::read()
{
    if (_isRead)
        return;
    const QVector<ApplicationFolder> folders = applicationFolders();
    _folders->watch(folders);
    _read = Read::create(readApplications({}, _ending));
    _isRead = true;
    if (_read->folders != folders)
        _timer.start();
}

QString ApplicationList::identify(const QString &windowClass, qint64 pid)
{
    if (!_matcher)
        _matcher = std::make_unique<const WindowMatcher>(_read->sorted);
    return _matcher->match(windowClass, processIdentity(pid));
}

QString ApplicationList::iconSource(const QString &appId)
{
    if (!_isRead && !_reading)
        _readInThread();
    const ApplicationPointer application = find(appId);
    return application ? application->iconSource : QString();
}

void ApplicationList::_readInThread()
{
    // What changes during a reading is read after it.
    if (_reading) {
        _timer.start();
        return;
    }
    _reading = true;
    _folders->watch(_read->folders);
    _reader.start([this, before = _read] {
        QElapsedTimer time;
        time.start();
        const auto read = Read::create(readApplications(*before, _ending));
        const qint64 milliseconds = time.elapsed();
        QMetaObject::invokeMethod(
                this, [this, read, milliseconds] { _take(read, milliseconds); },
                Qt::QueuedConnection);
    });
}

void ApplicationList::_take(const Read &read, qint64 milliseconds)
{
    _reading = false;
    _isRead = true;
    // A long list that changes all the time leaves the processor to others for most of it.
    _timer.setInterval(qMax(delay, int(2 * milliseconds)));
    Read before = std::exchange(_read, read);
    // A folder that is new has been watched by nobody while it was read.
    if (read->folders != before->folders)
        _timer.start();
    const bool isOther = read->sorted != before->sorted;
    // Thousands of objects go with it.
    _reader.start([before = std::move(before)]() mutable { before.reset(); });
    if (!isOther)
        return;
    _matcher.reset();
    Q_EMIT changed();
}

} // namespace quorvane
