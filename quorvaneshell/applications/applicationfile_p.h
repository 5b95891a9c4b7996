#pragma once

#include "application_p.h"

namespace quorvane {

// The application of a desktop entry; null for what is none, is hidden, or lacks its name or its
// program. May be called in any thread.
ApplicationPointer readApplication(const QString &path, const QString &appId);

} // namespace quorvane
