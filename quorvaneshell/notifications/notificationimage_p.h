#pragma once

#include <QDBusArgument>
#include <QImage>

namespace quorvane {

// The picture in the hint "image-data" of a notification, and in the older "image_data" and
// "icon_data": "(iiibiiay)", that is width, height, rowstride, alpha, bits per sample, channels and
// pixels, scaled as notificationImage(QImage) does. Null for any other value, for sizes that don't
// match the pixels, and for more than 40 MB.
QImage notificationImage(const QDBusArgument &argument);

// A side longer than 320 pixels is scaled down to that.
QImage notificationImage(const QImage &image);

} // namespace quorvane
