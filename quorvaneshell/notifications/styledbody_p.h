#pragma once

#include <QString>

namespace quorvane {

// The body of a notification for Text.StyledText. Of the markup that the Desktop Notifications
// Specification has, <b>, <i>, <u> and the first 50 links to http and https stay, an <img> is its
// alternative text, and a line break is one. Anything else stands there as it was written. What
// comes out is well-formed whatever goes in, makes nobody load anything, and has at most 32,768
// characters and what ends the last of them.
QString styledBody(const QString &body);

// What a subset of HTML says without its tags: blanks are one, and what begins a paragraph, an item
// or a row begins a line. Entities are resolved. Never longer than what goes in.
QString plainText(const QString &markup);

// At most so many characters of a text, none of which is cut in two.
QString shortened(const QString &text, int length);

// The text without combining marks beyond the eighth on a letter, which take a view seconds to
// draw. A pile is how many the last letter has, for a text that goes on.
QString withoutPiledMarks(const QString &text, int *pile = nullptr);

} // namespace quorvane
