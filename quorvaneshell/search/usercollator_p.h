#pragma once

#include <QCollator>

namespace quorvane {

// The order in which people look for names: that of the user's language, without regard to case.
QCollator userCollator();

} // namespace quorvane
