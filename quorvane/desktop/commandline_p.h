#pragma once

#include <QStringList>

// How the command value of a desktop entry becomes a program and its arguments.
namespace xdg {

// Splits a command value into its tokens, byte by byte in UTF-8.
//
// White space separates. Single and double quotes group; a backslash outside quotes makes the next
// byte literal, inside quotes it does so only before a backslash or the quote that is open. A quote
// left open at the end is accepted. An empty pair of quotes makes a token of its own at the
// beginning of a word and nothing at the end of one.
QStringList splitCommandLine(QString text);

// Puts args in the place of the field codes among the tokens behind the program.
//
// A code counts only as a whole token: %f and %u become the first of args or nothing, %F and %U
// take no argument at all; %d, %D, %n, %N, %v and %m are dropped, %i and %c with a warning.
// Everything else is copied, %k and %% too.
QStringList expandFieldCodes(const QStringList &tokens, const QStringList &args);

} // namespace xdg
