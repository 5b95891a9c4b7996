#include "imagestore_p.h"

#include "iconsource_p.h"

#include <QHash>
#include <QMutex>

namespace quorvane {

namespace {

struct Store
{
    QMutex mutex;
    QHash<quint64, QImage> images;
    quint64 last = 0;
};

Q_GLOBAL_STATIC(Store, store)

} // namespace

QString ImageStore::add(const QImage &image)
{
    const QMutexLocker lock(&store->mutex);
    store->images.insert(++store->last, image);
    return pixelsSource(store->last);
}

void ImageStore::remove(const QString &source)
{
    const QMutexLocker lock(&store->mutex);
    store->images.remove(pixelsNumber(source));
}

QImage ImageStore::find(const QString &source)
{
    const QMutexLocker lock(&store->mutex);
    return store->images.value(pixelsNumber(source));
}

} // namespace quorvane
