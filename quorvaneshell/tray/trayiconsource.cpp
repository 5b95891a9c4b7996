#include "trayiconsource_p.h"

#include <quorvaneshell/pictures/iconsource_p.h>
#include <quorvaneshell/pictures/icontheme_p.h>

#include <QElapsedTimer>
#include <QFile>
#include <QMutex>
#include <QRunnable>
#include <QStringList>
#include <QThreadPool>
#include <QUrl>

#include <sys/stat.h>

namespace quorvane {

namespace {

bool hasFile(const TrayIcon &icon)
{
    return icon.name.startsWith(QLatin1Char('/')) || icon.name.startsWith(QLatin1String("file:"))
           || (!icon.name.isEmpty() && !icon.themePath.isEmpty());
}

// Tells a file from others, and from itself once it is written anew; empty for none.
QString stampOfFile(const QString &path)
{
    struct stat found = {};
    if (path.isEmpty() || stat(QFile::encodeName(path).constData(), &found) != 0)
        return {};
    QStringList parts;
    for (const auto part : { long(found.st_mtim.tv_sec), found.st_mtim.tv_nsec, long(found.st_size),
                             long(found.st_ino) })
        parts += QString::number(part, 36);
    return parts.join(QLatin1Char('.'));
}

QString stampOf(const QString &name, const QString &themePath)
{
    if (name.startsWith(QLatin1Char('/')))
        return stampOfFile(iconFileAt(name));
    if (name.startsWith(QLatin1String("file:")))
        return stampOfFile(iconFileAt(QUrl(name).toLocalFile()));
    // Of the two sizes in use: who writes one writes all.
    constexpr int small = 22;
    constexpr int large = 64;
    return stampOfFile(iconFileInFolder(themePath, name, small))
           + stampOfFile(iconFileInFolder(themePath, name, large));
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
                const QString stamp = stampOf(name, themePath);
                const QMutexLocker lock(&receiver->mutex);
                if (TrayIconSource *object = receiver->object)
                    QMetaObject::invokeMethod(
                            object,
                            [=, spent = clock.elapsed()] {
                                object->_take({ name, themePath, {} }, stamp, spent);
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
    return iconSource(_icon.name, _icon.themePath, _pixels, stamp);
}

} // namespace quorvane
