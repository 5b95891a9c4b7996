#pragma once

#include <QString>

namespace quorvane {

// Whether a text from a stranger is a name by which the bus may be called: libdbus ends the process
// over some that are none.
bool isBusName(const QString &text);
bool isObjectPath(const QString &text);

} // namespace quorvane
