#include "shellwords_p.h"

#include <glib.h>

namespace quorvane {

QByteArrayList shellWords(const QByteArray &line)
{
    g_auto(GStrv) arguments = nullptr;
    QByteArrayList words;
    if (!g_shell_parse_argv(line.constData(), nullptr, &arguments, nullptr))
        return words;
    for (auto *argument = arguments; *argument; ++argument)
        words += *argument;
    return words;
}

QByteArray shellQuoted(const QByteArray &text)
{
    g_autofree gchar *quoted = g_shell_quote(text.constData());
    return quoted;
}

bool isInstalled(const QByteArray &program)
{
    g_autofree gchar *found = g_find_program_in_path(program.constData());
    return found;
}

} // namespace quorvane
