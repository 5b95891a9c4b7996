#pragma once

#include <QByteArrayList>

namespace quorvane {

// The words of a command line, as a shell's quotes part them; empty for quotes that don't end.
QByteArrayList shellWords(const QByteArray &line);

// A text as one such word.
QByteArray shellQuoted(const QByteArray &text);

// Whether a program is there to be run, by its path or in one of the folders of PATH.
bool isInstalled(const QByteArray &program);

} // namespace quorvane
