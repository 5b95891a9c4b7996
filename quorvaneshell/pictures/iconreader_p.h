#pragma once

#include "iconpicture_p.h"

#include <functional>

namespace quorvane {

// Reads icons in threads, which end with the application.

// Calls a function of an IconPicture in one of them. What the interface waits for comes first.
//
// Icons that name a file or a folder, as programs on the bus may do it, have threads of their own:
// on a disk that doesn't answer they stay for good, and icons of themes go on being read.
void readIconInThread(const IconSource &source, const QSize &room, const IconThemes &themes,
                      const std::function<void(const IconPicture &)> &done, bool isUrgent = false);

} // namespace quorvane
