#include "applicationlist.h"

#include "applicationfolders.h"

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
    : _folders(new ApplicationFolders(this))
{
    _timer.setSingleShot(true);
    _timer.setInterval(delay);
    connect(_folders, &ApplicationFolders::changed, this, [this] {
        if (!_timer.isActive())
            _timer.start();
    });
    connect(&_timer, &QTimer::timeout, this, &ApplicationList::_read);
    _applications = readApplications();
}

ApplicationList::~ApplicationList() = default;

void ApplicationList::_read()
{
    // What changes during a reading is read after it.
    if (_reading) {
        _timer.start();
        return;
    }
    _reading = true;
    _folders->watch();
    _reader.start([this] {
        const QVector<ApplicationPointer> read = readApplications();
        QMetaObject::invokeMethod(
                this,
                [this, read] {
                    _reading = false;
                    _applications = read;
                    Q_EMIT changed();
                },
                Qt::QueuedConnection);
    });
}
