#pragma once

#include "application_p.h"

#include <vector>

namespace quorvane {

class ApplicationUsage;

// Those of the applications in which all of these folded words are found, the best first. That goes
// by the place where a word is found:
// exactly that name; the beginning of the name, the shortest first; the beginning of a word in the
// name; in generic name (first its beginning) and keywords; in comment and full name; in the id;
// anywhere within the name. The last two count from three letters on. Of several words that which is
// found in the last of these places counts. What is equal stays in order; without words all is.
//
// Of what is equal, where the length of the name doesn't count either, that which is used most comes
// first if usage is given.
std::vector<ApplicationPointer> foundApplications(std::vector<ApplicationPointer> applications,
                                                  const QStringList &words,
                                                  const ApplicationUsage *usage = nullptr);

} // namespace quorvane
