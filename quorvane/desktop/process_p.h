#pragma once

#include <QtGlobal>

namespace xdg {

// Asks the process to end with SIGTERM. 0 and negative numbers would reach process groups or the
// whole session, so they reach nobody.
void terminateProcess(qint64 pid);

} // namespace xdg
