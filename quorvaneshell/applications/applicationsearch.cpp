#include "applicationsearch_p.h"

#include <quorvaneshell/search/wordmatch.h>

namespace quorvane {

namespace {

constexpr int fewestLetters = 3;

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

} // namespace

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

} // namespace quorvane
