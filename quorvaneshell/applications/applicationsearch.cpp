#include "applicationsearch_p.h"

#include "applicationusage_p.h"

#include <quorvaneshell/search/wordmatch.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace quorvane {

namespace {

constexpr int fewestLetters = 3;

// Where a search finds what was typed, the best place first.
enum Match {
    ExactName,
    BeginsName,
    BeginsWordOfName,
    BeginsKind,
    InKind,
    InAbout,
    InId,
    WithinName,
    NoMatch
};

Match compareWord(const Application &application, const QString &word)
{
    if (application.foldedName.startsWith(word))
        return BeginsName;
    if (beginsWord(application.foldedName, word))
        return BeginsWordOfName;
    if (application.foldedKind.startsWith(word))
        return BeginsKind;
    if (beginsWord(application.foldedKind, word))
        return InKind;
    if (beginsWord(application.foldedAbout, word))
        return InAbout;
    if (word.size() < fewestLetters)
        return NoMatch;
    if (beginsWord(application.foldedId, word))
        return InId;
    return application.foldedName.contains(word) ? WithinName : NoMatch;
}

Match compare(const Application &application, const QStringList &words)
{
    if (words.size() == 1)
        return application.foldedName == words.first() ? ExactName
                                                       : compareWord(application, words.first());
    const QString text = words.join(QLatin1Char(' '));
    if (application.foldedName.startsWith(text))
        return application.foldedName.size() == text.size() ? ExactName : BeginsName;
    Match worst = BeginsWordOfName;
    for (const QString &word : words)
        worst = qMax(worst, compareWord(application, word));
    return worst;
}

} // namespace

std::vector<ApplicationPointer> foundApplications(std::vector<ApplicationPointer> applications,
                                                  const QStringList &words,
                                                  const ApplicationUsage *usage)
{
    const auto sort = [usage](std::vector<ApplicationPointer> *some) {
        if (usage)
            usage->sort(some);
    };
    if (words.isEmpty()) {
        sort(&applications);
        return applications;
    }
    std::array<std::vector<ApplicationPointer>, NoMatch> ranked;
    for (ApplicationPointer &application : applications) {
        const Match match = compare(*application, words);
        if (match != NoMatch)
            ranked[match].push_back(std::move(application));
    }
    // The less of a name is left to be typed, the likelier it is meant.
    std::stable_sort(ranked[BeginsName].begin(), ranked[BeginsName].end(),
                     [](const ApplicationPointer &one, const ApplicationPointer &other) {
                         return one->foldedName.size() < other->foldedName.size();
                     });
    applications.clear();
    for (auto &some : ranked) {
        sort(&some);
        std::move(some.begin(), some.end(), std::back_inserter(applications));
    }
    return applications;
}

} // namespace quorvane
