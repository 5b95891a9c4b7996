#include "wordmatch.h"

#include <algorithm>

namespace quorvane {

namespace {

// The accents of Latin, Greek and Cyrillic letters. The marks of other scripts tell words apart.
bool isAccent(QChar character)
{
    return character.unicode() >= 0x300 && character.unicode() <= 0x36f;
}

// Halves of characters beyond the first plane count as letters, which most of them are.
bool isInsideWord(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character.isSurrogate();
}

} // namespace

QString foldedText(const QString &text)
{
    QString folded = text.normalized(QString::NormalizationForm_KD).toCaseFolded();
    folded.resize(static_cast<int>(std::remove_if(folded.begin(), folded.end(), isAccent)
                                   - folded.begin()));
    return folded;
}

QStringList foldedWords(const QString &typed)
{
    return foldedText(typed).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool beginsWord(const QString &text, const QString &word)
{
    for (int at = text.indexOf(word); at >= 0; at = text.indexOf(word, at + 1)) {
        if (at == 0 || !isInsideWord(text.at(at - 1)))
            return true;
    }
    return false;
}

} // namespace quorvane
