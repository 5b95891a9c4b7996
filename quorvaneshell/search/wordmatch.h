#pragma once

#include <quorvaneshell/quorvaneshell_export.h>

#include <QString>
#include <QStringList>

namespace quorvane {

/*! \ingroup shell
    \brief The text in the form in which texts are compared: without upper case, accents and differences
    of width, so that "uber" is found in "Über".

    For finding what people type: words, in any order, each at the beginning of a word of the text. No
    character is special ("c++", "("). A text is found
    when beginsWord() is true for each of foldedWords(). */
QUORVANE_SHELL_EXPORT QString foldedText(const QString &text);

/*! \ingroup shell
    \brief The words of what was typed, which blanks separate, in the form of foldedText(). None for
    blanks alone. */
QUORVANE_SHELL_EXPORT QStringList foldedWords(const QString &typed);

/*! \ingroup shell
    \brief Whether a word stands at the beginning of a word of a text. Both have to be in the form of
    foldedText(). */
QUORVANE_SHELL_EXPORT bool beginsWord(const QString &text, const QString &word);

} // namespace quorvane
