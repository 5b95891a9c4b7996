#include "icon.h"

#include "iconcache_p.h"
#include "iconengine_p.h"
#include "iconreader_p.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>

#include <atomic>
#include <memory>
#include <utility>

namespace quorvane {

namespace {

// Who asked for a picture. Lives in the asker's thread, as long as anybody may post to it.
class Asker : public QObject
{
public:
    Asker(QObject *context, std::function<void(const QImage &)> done)
        : _context(context)
        , _done(std::move(done))
    {
        connect(context, &QObject::destroyed, this, [this] { _isGone = true; });
    }
    // In any thread.
    bool isGone() const { return _isGone; }

    void give(const QImage &image)
    {
        if (_context)
            _done(image);
    }

private:
    const QPointer<QObject> _context;
    const std::function<void(const QImage &)> _done;
    std::atomic_bool _isGone { false };
};

} // namespace

QIcon icon(const QString &source, const QString &label, const QColor &color)
{
    return source.isEmpty() ? QIcon() : QIcon(new IconEngine({ source, label, color }));
}

void readIcon(const QString &source, const QSize &size, QObject *context,
              std::function<void(const QImage &)> done)
{
    const std::shared_ptr<Asker> asker(new Asker(context, std::move(done)),
                                       [](Asker *gone) { gone->deleteLater(); });
    const auto give = [asker](const IconPicture &picture) {
        QMetaObject::invokeMethod(
                asker.get(), [asker, image = picture.image] { asker->give(image); },
                Qt::QueuedConnection);
    };
    const auto read
            = [asker, give, parsed = IconSource::of(source), size](const IconThemes &themes) {
                  if (!asker->isGone())
                      readIconInThread(parsed, size, themes, give);
              };
    // Which theme there is only the GUI thread may ask. Nobody waits for its answer.
    if (QThread::currentThread() == qApp->thread())
        read(IconThemes::ofApplication());
    else
        QMetaObject::invokeMethod(
                qApp, [read] { read(IconThemes::ofApplication()); }, Qt::QueuedConnection);
}

IconWatcher::IconWatcher(QObject *parent)
    : QObject(parent)
{
    connect(&IconCache::instance(), &IconCache::iconsRead, this, &IconWatcher::iconsRead);
}

} // namespace quorvane
