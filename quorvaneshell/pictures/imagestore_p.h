#pragma once

#include <QImage>
#include <QString>

namespace quorvane {

// Pictures that came over the bus and stand in no theme and no file. The models put them in and take
// them out; image://quorvane shows them. May be used from any thread.
class ImageStore
{
public:
    // Keeps the picture and returns its URL, which no other picture gets in the life of the process.
    static QString add(const QImage &image);
    // Forgets what add() returned this URL for; any other text is ignored.
    static void remove(const QString &source);
    // The picture of a URL, or of its last part; null for an unknown one.
    static QImage find(const QString &source);
};

} // namespace quorvane
