#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

// What people type to find something, and where it is found: words, in any order, each at the
// beginning of a word of the text. Upper case, accents and width make no difference ("uber" finds
// "Über"), and no character is special ("c++", "(").

// The text in the form in which texts are compared.
QString foldedText(const QString &text);

// The words of what was typed, which blanks separate, in that form too.
QStringList foldedWords(const QString &typed);

// Whether the word stands at the beginning of a word of the text. Both are folded.
bool beginsWord(const QString &text, const QString &word);

} // namespace quorvane
