#pragma once

#include <quorvaneshell/quorvaneshell_export.h>

#include <QString>
#include <QStringList>

namespace quorvane {

/*! \ingroup shell
    The text in the form in which texts are compared: upper case, accents and width make no difference
    then ("uber" finds "Über"). */
QUORVANE_SHELL_EXPORT QString foldedText(const QString &text);

/*! \ingroup shell
    The words of what people type to find something, which blanks separate, folded by foldedText().
    They may be in any order, and no character is special ("c++", "("). Empty for blanks alone. */
QUORVANE_SHELL_EXPORT QStringList foldedWords(const QString &typed);

/*! \ingroup shell
    Whether the word stands at the beginning of a word of the text. Both are folded; any text has the
    empty word. */
QUORVANE_SHELL_EXPORT bool beginsWord(const QString &text, const QString &word);

} // namespace quorvane
