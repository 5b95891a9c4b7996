#pragma once

#include <QImage>
#include <QString>

class QVariant;

namespace quorvane {

// The best of an item's pictures, a(iiay) of sizes and pixels as ARGB32 in network byte order: the
// largest up to 256 pixels a side, else the smallest up to 1024. Null for another type, and where no
// picture has as many bytes as its size takes.
QImage trayImage(const QVariant &pictures);

} // namespace quorvane
