#pragma once

#include <QImage>
#include <QString>

class QVariant;

// The best of an item's pictures, a(iiay) of sizes and pixels as ARGB32 in network byte order: the
// largest up to 256 pixels a side, else the smallest up to 1024. Null for another type, and where no
// picture has as many bytes as its size takes.
QImage trayImage(const QVariant &pictures);

// A picture that stands in the image store while the object lives.
class TrayPicture
{
public:
    TrayPicture() = default;
    ~TrayPicture();
    Q_DISABLE_COPY(TrayPicture)

    // Its URL, empty for a null image. The same image keeps its URL.
    QString show(const QImage &image);

private:
    QImage _image;
    QString _source;
};
