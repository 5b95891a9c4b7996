#pragma once

#include "application_p.h"

namespace quorvane {

// Where a search finds what was typed, the best place first.
enum Match {
    ExactName,
    BeginsName,
    BeginsWordOfName,
    BeginsKind,
    InKind,  // Generic name and keywords.
    InAbout, // Comment and full name.
    InId,
    WithinName,
    NoMatch
};

// The place for folded words, each of which has to be found; that of the word found last counts. Id
// and the inside of the name count from three letters on.
Match compare(const Application &application, const QStringList &words);

} // namespace quorvane
