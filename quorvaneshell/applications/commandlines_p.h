#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QVector>

namespace quorvane {

// What the field codes of a desktop entry stand for besides files.
struct FieldTexts
{
    QByteArray icon;
    QByteArray name;
    QByteArray path;        // Of the entry.
    bool keepsUris = false; // %u and %U give files as URIs too, not as paths.
};

// The command lines that the value of Exec comes to, each a program with its arguments, by the
// rules of the Desktop Entry Specification as GIO has them: a code for one file makes a command of
// each, and files for which there is no code come last. Empty without a program, and for quotes
// that don't end.
QVector<QByteArrayList> commandLines(const QByteArray &exec, QByteArrayList uris,
                                     const FieldTexts &texts);

} // namespace quorvane
