#include "iconprovider.h"

#include <quorvaneshell/pictures/icon.h>

#include <memory>

namespace {

class Response : public QQuickImageResponse
{
    Q_OBJECT

public:
    Response(const QString &id, const QSize &size)
        : _reading(std::make_unique<QObject>())
    {
        quorvane::readIcon(QLatin1String("image://quorvane/") + id, size, _reading.get(),
                           [this](const QImage &image) {
                               _image = image;
                               Q_EMIT finished();
                           });
    }

    QQuickTextureFactory *textureFactory() const override
    {
        return QQuickTextureFactory::textureFactoryForImage(_image);
    }

    // Qt Quick waits for the signal nevertheless, and holds a lock meanwhile.
    void cancel() override
    {
        _reading.reset();
        QMetaObject::invokeMethod(this, &QQuickImageResponse::finished, Qt::QueuedConnection);
    }

private:
    std::unique_ptr<QObject> _reading;
    QImage _image;
};

} // namespace

QQuickImageResponse *IconProvider::requestImageResponse(const QString &id,
                                                        const QSize &requestedSize)
{
    return new Response(id, requestedSize);
}

#include "iconprovider.moc"
