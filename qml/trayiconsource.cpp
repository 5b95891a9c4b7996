#include "trayiconsource.h"

#include "iconsource.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QMutex>
#include <QRunnable>
#include <QThreadPool>
#include <QUrl>

#include <sys/stat.h>

namespace {

bool hasFile(const TrayIcon &icon)
{
    return icon.name.startsWith(QLatin1Char('/')) || icon.name.startsWith(QLatin1String("file:"))
           || (!icon.name.isEmpty() && !icon.themePath.isEmpty());
}

// Another number for another file, or for one that was written anew; 0 for none.
quint64 stampOfFile(const QString &path)
{
    quint64 stamp = 0;
    for (const char *ending : { "", ".svg", ".png", ".xpm" }) {
        struct stat found = {};
        if (stat(QFile::encodeName(path + QLatin1String(ending)).constData(), &found) != 0)
            continue;
        for (const auto part : { found.st_mtim.tv_sec, found.st_mtim.tv_nsec, found.st_size,
                                 long(found.st_ino), long(found.st_dev) })
            stamp = stamp * 1000003 + quint64(part);
    }
    return stamp;
}

// Of all sizes that there are, whichever is shown.
quint64 stampOf(const QString &name, const QString &themePath)
{
    if (name.startsWith(QLatin1Char('/')))
        return stampOfFile(name);
    if (name.startsWith(QLatin1String("file:")))
        return stampOfFile(QUrl(name).toLocalFile());
    const QString file = QLatin1Char('/') + name;
    quint64 stamp = stampOfFile(themePath + file);
    int left = 1000; // Folders.
    const QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot;
    QDirIterator sizes(themePath + QLatin1String("/hicolor"), folders);
    while (sizes.hasNext() && left-- > 0) {
        QDirIterator contexts(sizes.next(), folders);
        while (contexts.hasNext() && left-- > 0)
            stamp += stampOfFile(contexts.next() + file);
    }
    return stamp;
}

// Never ended: a thread may stand for good on a disk that is gone.
QThreadPool *threads()
{
    static auto *const pool = new QThreadPool;
    return pool;
}

} // namespace

// Where a thread finds the object, if it is still there.
struct TrayIconSource::Receiver
{
    QMutex mutex;
    TrayIconSource *object;
};

TrayIconSource::TrayIconSource(QObject *parent)
    : QObject(parent)
    , _receiver(std::make_shared<Receiver>())
{
    _receiver->object = this;
    _pause.setSingleShot(true);
    connect(&_pause, &QTimer::timeout, this, [this] {
        if (_outdated)
            _look();
    });
}

TrayIconSource::~TrayIconSource()
{
    const QMutexLocker lock(&_receiver->mutex);
    _receiver->object = nullptr;
}

void TrayIconSource::show(const TrayIcon &icon)
{
    const bool isSame = icon.name == _icon.name && icon.themePath == _icon.themePath;
    _icon = icon;
    _pixels = _picture.show(icon.image);
    if (!hasFile(icon))
        _source = _makeSource({});
    else if (isSame && !_source.isEmpty())
        _source = _makeSource(_stamp);
    if (hasFile(icon))
        _look();
}

void TrayIconSource::_look()
{
    _outdated = _isLooking || _pause.isActive();
    if (_outdated)
        return;
    _isLooking = true;
    threads()->start(QRunnable::create(
            [receiver = _receiver, name = _icon.name, themePath = _icon.themePath] {
                QElapsedTimer clock;
                clock.start();
                const quint64 stamp = stampOf(name, themePath);
                const QString text = stamp == 0 ? QString() : QString::number(stamp, 36);
                const QMutexLocker lock(&receiver->mutex);
                if (TrayIconSource *object = receiver->object)
                    QMetaObject::invokeMethod(
                            object,
                            [=, spent = clock.elapsed()] {
                                object->_take({ name, themePath, {} }, text, spent);
                            },
                            Qt::QueuedConnection);
            }));
}

void TrayIconSource::_take(const TrayIcon &icon, const QString &stamp, qint64 spent)
{
    _isLooking = false;
    // What takes long to look at is looked at the less often.
    constexpr int restFor = 20;
    _pause.start(int(restFor * spent));
    if (icon.name != _icon.name || icon.themePath != _icon.themePath)
        return;
    _stamp = stamp;
    if (_source == _makeSource(stamp))
        return;
    _source = _makeSource(stamp);
    Q_EMIT changed();
}

QString TrayIconSource::_makeSource(const QString &stamp) const
{
    Q_UNUSED(stamp)
    return _icon.name.isEmpty() ? _pixels : iconSource(_icon.name, _icon.themePath);
}
