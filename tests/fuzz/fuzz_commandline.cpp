#include "fuzz.h"

#include <quorvane/desktop/commandline_p.h>

// A command value that must split into exactly these tokens.
static QString quoted(QStringList tokens)
{
    tokens.replaceInStrings("\\", "\\\\").replaceInStrings("'", "\\'");
    return tokens.isEmpty() ? QString() : '\'' + tokens.join("' '") + '\'';
}

// The first line is the command value, each line behind it an argument.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QStringList args
            = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size)).split('\n');
    const QString text = args.takeFirst();

    const QStringList tokens = xdg::splitCommandLine(text);
    require(tokens.size() <= (text.toUtf8().size() + 1) / 2);
    require(tokens.join(QString()).size() <= text.size());
    require(xdg::splitCommandLine(quoted(tokens)) == tokens);

    const QStringList expanded = xdg::expandFieldCodes(tokens, args);
    require(expanded.size() <= tokens.size());
    for (const QString &argument : expanded)
        require(tokens.contains(argument) || argument == args.value(0));
    require(xdg::expandFieldCodes(tokens, {}).size() <= expanded.size());
    return 0;
}
