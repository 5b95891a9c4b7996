#include "storedpicture_p.h"

#include "imagestore_p.h"

namespace quorvane {

StoredPicture::~StoredPicture()
{
    ImageStore::remove(_source);
}

QString StoredPicture::show(const QImage &image)
{
    if (image == _image)
        return _source;
    ImageStore::remove(_source);
    _image = image;
    _source = image.isNull() ? QString() : ImageStore::add(image);
    return _source;
}

} // namespace quorvane
