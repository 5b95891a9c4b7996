#include "imagestore_p.h"

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

quint64 number(const QString &source)
{
    return source.section(QLatin1Char('/'), -1).toULongLong();
}

} // namespace

QString ImageStore::add(const QImage &image)
{
    const QMutexLocker lock(&store->mutex);
    store->images.insert(++store->last, image);
    return QStringLiteral("image://quorvane/pixels/%1").arg(store->last);
}

void ImageStore::remove(const QString &source)
{
    const QMutexLocker lock(&store->mutex);
    store->images.remove(number(source));
}

QImage ImageStore::find(const QString &source)
{
    const QMutexLocker lock(&store->mutex);
    return store->images.value(number(source));
}

} // namespace quorvane
