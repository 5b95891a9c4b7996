#pragma once

#include <QStringList>

namespace quorvane {

// The name under which people know a registered main category of the Desktop Menu Specification
// ("Sound & Video" for "AudioVideo"). It is in the user's language where a menu package has
// installed the category's .directory file, and English otherwise; any other category is its own
// name.
QString categoryName(const QString &category);

// The main category under which applications of a category are shown: that of Audio and Video is
// AudioVideo. Empty for a category that is none.
QString mainCategory(const QString &category);

// Categories in the order of their names.
QStringList sortedByName(QStringList categories);

} // namespace quorvane
