#pragma once

#include <QImage>
#include <QString>

namespace quorvane {

// A picture that stands in the image store while the object lives.
class StoredPicture
{
public:
    StoredPicture() = default;
    ~StoredPicture();
    Q_DISABLE_COPY(StoredPicture)

    // Its URL, empty for a null image. The same image keeps its URL.
    QString show(const QImage &image);

private:
    QImage _image;
    QString _source;
};

} // namespace quorvane
