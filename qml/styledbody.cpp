#include "styledbody.h"

#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

namespace {

// What an entity stands for; null for anything else.
QString entityText(const QString &name)
{
    if (name.startsWith(QLatin1Char('#'))) {
        const bool hexadecimal
                = name.midRef(1, 1).compare(QLatin1Char('x'), Qt::CaseInsensitive) == 0;
        const uint code
                = hexadecimal ? name.midRef(2).toUInt(nullptr, 16) : name.midRef(1).toUInt();
        const bool character
                = code != 0 && code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
        return character ? QString::fromUcs4(&code, 1) : QString();
    }
    static const char *const names[][2]
            = { { "amp", "&" }, { "apos", "'" },      { "gt", ">" },
                { "lt", "<" },  { "nbsp", "\u00a0" }, { "quot", "\"" } };
    for (const auto &entity : names) {
        if (name == QLatin1String(entity[0]))
            return QString::fromUtf8(entity[1]);
    }
    return {};
}

// The text that a piece of markup without tags stands for.
QString decoded(const QString &markup)
{
    static const QRegularExpression entity(QStringLiteral("&(#?[0-9a-zA-Z]{1,8});"));
    QString text;
    int end = 0;
    for (auto found = entity.globalMatch(markup); found.hasNext();) {
        const auto match = found.next();
        const QString character = entityText(match.captured(1));
        text += markup.midRef(end, match.capturedStart() - end);
        text += character.isNull() ? match.captured() : character;
        end = match.capturedEnd();
    }
    return text + markup.midRef(end);
}

QString escaped(const QString &text)
{
    QString markup;
    for (const QChar character : text) {
        if (character == QLatin1Char('<'))
            markup += QLatin1String("&lt;");
        else if (character == QLatin1Char('>'))
            markup += QLatin1String("&gt;");
        else if (character == QLatin1Char('&'))
            markup += QLatin1String("&amp;");
        else if (character == QLatin1Char('\n'))
            markup += QLatin1String("<br/>");
        else if (character == QLatin1Char('\t') || character.category() != QChar::Other_Control)
            markup += character;
    }
    return markup;
}

QString attribute(const QString &attributes, const QString &name)
{
    const QRegularExpression expression(
            QStringLiteral("(?:^|\\s)%1\\s*=\\s*(?:\"([^\"]*)\"|'([^']*)')").arg(name),
            QRegularExpression::CaseInsensitiveOption);
    const auto match = expression.match(attributes);
    return decoded(match.captured(1) + match.captured(2));
}

// The start of a link; empty for one that leads anywhere but to the web.
QString linkStart(const QString &address)
{
    const QUrl url(address.trimmed());
    const QString scheme = url.scheme();
    const bool web = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    if (!web || !url.isValid() || url.host().isEmpty())
        return {};
    // Encoded it has no quotation mark and no bracket. StyledText resolves no entities in there.
    return QStringLiteral("<a href=\"%1\">").arg(QString::fromLatin1(url.toEncoded()));
}

class Styler
{
public:
    QString styled(const QString &body)
    {
        // A bracket ends a tag, or the text that only looked like the beginning of one.
        static const QRegularExpression bracket(QStringLiteral("<[^<>]*>?"));
        int end = 0;
        for (auto found = bracket.globalMatch(body); found.hasNext();) {
            const auto match = found.next();
            _addText(body.mid(end, match.capturedStart() - end));
            if (!_addTag(match.captured()))
                _addText(match.captured());
            end = match.capturedEnd();
        }
        _addText(body.mid(end));
        while (!_open.isEmpty())
            _close(_open.constLast());
        return _out;
    }

private:
    void _addText(const QString &markup) { _out += escaped(decoded(markup)); }

    // Whether it is one that counts.
    bool _addTag(const QString &text)
    {
        static const QRegularExpression tag(
                QStringLiteral("^<(/?)(a|b|br|i|img|u)(\\s[^<>]*?)?/?>$"),
                QRegularExpression::CaseInsensitiveOption);
        const auto match = tag.match(text);
        const QString name = match.captured(2).toLower();
        if (name == QLatin1String("br"))
            _out += QLatin1String("<br/>");
        else if (name == QLatin1String("img"))
            _out += escaped(attribute(match.captured(3), QStringLiteral("alt")));
        else if (match.capturedLength(1) > 0)
            _close(name);
        else if (name == QLatin1String("a"))
            _begin(name, linkStart(attribute(match.captured(3), QStringLiteral("href"))));
        else if (match.hasMatch())
            _begin(name, QLatin1Char('<') + name + QLatin1Char('>'));
        return match.hasMatch();
    }

    void _begin(const QString &name, const QString &start)
    {
        if (start.isEmpty() || _open.contains(name))
            return;
        _open += name;
        _out += start;
    }

    // Ends what was begun inside it as well.
    void _close(const QString &name)
    {
        while (_open.contains(name))
            _out += QLatin1String("</") + _open.takeLast() + QLatin1Char('>');
    }

    QString _out;
    QStringList _open;
};

} // namespace

QString styledBody(const QString &body)
{
    return Styler().styled(body);
}
