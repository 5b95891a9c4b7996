#include <quorvane/desktop/commandline_p.h>

#include <QDebug>

#include <cctype>

namespace {

// Whether the token is a percent sign and one of the letters.
bool isCode(const QString &token, QLatin1String letters)
{
    return token.size() == 2 && token.at(0) == QLatin1Char('%') && letters.contains(token.at(1));
}

} // namespace

namespace xdg {

QStringList splitCommandLine(QString text)
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
        if (isCode(token, QLatin1String("fu"))) {
            expanded += args.mid(0, 1);
        } else if (isCode(token, QLatin1String("ic"))) {
            qWarning() << "XdgEntry: %i and %c are not supported (found in "
                       << tokens.join(QLatin1Char(' ')) << ")";
        } else if (!isCode(token, QLatin1String("dDnNvmFU"))) {
            expanded += token;
        }
    }
    return expanded;
}

} // namespace xdg
