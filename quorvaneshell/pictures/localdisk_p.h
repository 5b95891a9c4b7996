#pragma once

#include <QByteArray>

namespace quorvane {

// Whether all that an absolute path leads through, along links too, is on disks of this machine or in
// its memory, and so answers at once. File systems of servers and of other programs are not, nor is
// what is mounted when somebody looks at it. It asks none of these.
bool isOnLocalDisk(const QByteArray &path);

} // namespace quorvane
