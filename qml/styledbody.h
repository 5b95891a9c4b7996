#pragma once

#include <QString>

// The body of a notification for Text.StyledText. Of the markup that the Desktop Notifications
// Specification has, <b>, <i>, <u> and links to http and https stay, an <img> is its alternative
// text, and a line break is one. Anything else stands there as it was written. What comes out is
// well-formed whatever goes in, and makes nobody load anything.
QString styledBody(const QString &body);
