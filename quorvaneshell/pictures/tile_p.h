#pragma once

#include <QImage>
#include <QString>

namespace quorvane {

// What stands for an icon that is missing: a tile with the first letter of a label, in a colour
// that depends on the label. Grey and blank without one.
QImage tile(const QString &label, int side);

} // namespace quorvane
