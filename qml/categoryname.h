#pragma once

#include <QString>

// The name under which people know a registered main category of the Desktop Menu Specification
// ("Sound & Video" for "AudioVideo"). It is in the user's language where a menu package has installed
// the category's .directory file, and English otherwise; any other category is its own name.
QString categoryName(const QString &category);
