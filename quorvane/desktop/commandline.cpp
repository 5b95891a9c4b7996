#include <quorvane/desktop/commandline_p.h>

#include <QDebug>

#include <cctype>

namespace {

bool isDroppedCode(const QString &token)
{
    static const QStringList codes {
        QStringLiteral("%d"), QStringLiteral("%D"), QStringLiteral("%n"), QStringLiteral("%N"),
        QStringLiteral("%v"), QStringLiteral("%m"), QStringLiteral("%F"), QStringLiteral("%U"),
    };
    return codes.contains(token);
}

bool isFileCode(const QString &token)
{
    return token == QLatin1String("%f") || token == QLatin1String("%u");
}

bool isUnsupportedCode(const QString &token)
{
    return token == QLatin1String("%i") || token == QLatin1String("%c");
}

} // namespace

namespace xdg {

QStringList splitCommandLine(const QString &text)
{
    constexpr char noQuote = '\0';

    const QByteArray bytes = text.toUtf8();
    QStringList tokens;
    QByteArray current;
    char quote = noQuote;

    const auto finishToken = [&tokens, &current] {
        tokens += QString::fromUtf8(current);
        current.clear();
    };

    for (int i = 0; i < bytes.size(); ++i) {
        const char c = bytes.at(i);
        if (c == '\\') {
            if (++i == bytes.size())
                break;
            const char next = bytes.at(i);
            if (quote != noQuote && next != '\\' && next != quote)
                current += '\\';
            current += next;
        } else if (quote != noQuote) {
            if (c != quote) {
                current += c;
                continue;
            }
            quote = noQuote;
            if (current.isEmpty())
                finishToken();
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (std::isspace(static_cast<unsigned char>(c))) {
            if (!current.isEmpty())
                finishToken();
        } else {
            current += c;
        }
    }

    if (!current.isEmpty())
        finishToken();
    return tokens;
}

QStringList expandFieldCodes(const QStringList &tokens, const QStringList &args)
{
    QStringList expanded;
    for (const QString &token : tokens) {
        if (isFileCode(token)) {
            expanded += args.mid(0, 1);
        } else if (isUnsupportedCode(token)) {
            qWarning() << "XdgEntry: %i and %c are not supported (found in "
                       << tokens.join(QLatin1Char(' ')) << ")";
        } else if (!isDroppedCode(token)) {
            expanded += token;
        }
    }
    return expanded;
}

} // namespace xdg
