#include "styledbody_p.h"

#include <QStringList>
#include <QUrl>

#include <utility>

namespace quorvane {

namespace {

constexpr int mostStyled = 32 * 1024;
constexpr int mostLinks = 50;
constexpr int mostMarks = 8;

bool isBlank(QChar character)
{
    return character.isSpace();
}

bool isAlphanumeric(QChar character)
{
    const char latin = character.toLatin1();
    return (latin >= '0' && latin <= '9') || (latin >= 'a' && latin <= 'z')
           || (latin >= 'A' && latin <= 'Z');
}

// Takes what a condition holds for from the beginning of a text.
template<typename Condition>
QStringView take(QStringView &text, Condition condition)
{
    int length = 0;
    while (length < text.size() && condition(text.at(length)))
        ++length;
    const QStringView taken = text.left(length);
    text = text.mid(length);
    return taken;
}

// What stands between brackets.
struct Tag
{
    explicit Tag(QStringView text)
    {
        if (text.size() < 3 || text.front() != QLatin1Char('<') || text.back() != QLatin1Char('>'))
            return;
        text = text.mid(1, text.size() - 2);
        ends = text.front() == QLatin1Char('/');
        if (ends)
            text = text.mid(1);
        const QString taken = take(text, isAlphanumeric).toString().toLower();
        if (!text.isEmpty() && text.back() == QLatin1Char('/'))
            text.chop(1);
        if (!text.isEmpty() && !text.front().isSpace())
            return;
        name = taken;
        attributes = text;
    }

    QString attribute(const QString &wanted) const;

    bool ends = false;
    QString name; // In lower case; empty for what is no tag.
    QStringView attributes;
};

// What an entity stands for; null for anything else.
QString entityText(const QString &name)
{
    if (name.startsWith(QLatin1Char('#'))) {
        const bool hexadecimal = name.size() > 1 && name.at(1).toLower() == QLatin1Char('x');
        const QString digits = name.mid(hexadecimal ? 2 : 1);
        const char32_t code = digits.toUInt(nullptr, hexadecimal ? 16 : 10);
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
QString decoded(QStringView markup)
{
    constexpr int longestName = 9; // "#x10FFFF" and a leading zero.
    QString text;
    text.reserve(int(markup.size()));
    while (!markup.isEmpty()) {
        text += take(markup, [](QChar character) { return character != QLatin1Char('&'); });
        if (markup.isEmpty())
            break;
        const int end = int(markup.left(longestName + 2).indexOf(QLatin1Char(';')));
        const QString character
                = end > 0 ? entityText(markup.mid(1, end - 1).toString()) : QString();
        text += character.isNull() ? QStringLiteral("&") : character;
        markup = markup.mid(character.isNull() ? 1 : end + 1);
    }
    return text;
}

QString Tag::attribute(const QString &wanted) const
{
    const auto isOfName
            = [](QChar character) { return !character.isSpace() && character != QLatin1Char('='); };
    QStringView rest = attributes;
    while (!rest.isEmpty()) {
        take(rest, isBlank);
        const QStringView found = take(rest, isOfName);
        take(rest, isBlank);
        if (rest.isEmpty() || rest.front() != QLatin1Char('='))
            continue;
        rest = rest.mid(1);
        take(rest, isBlank);
        const QChar quote = rest.isEmpty() ? QChar() : rest.front();
        if (quote != QLatin1Char('"') && quote != QLatin1Char('\''))
            continue;
        rest = rest.mid(1);
        const QStringView value = take(rest, [quote](QChar one) { return one != quote; });
        if (rest.isEmpty())
            break;
        rest = rest.mid(1);
        if (found.compare(wanted, Qt::CaseInsensitive) == 0)
            return decoded(value);
    }
    return {};
}

// Gives the pieces of markup to two functions in turn: text, and what a bracket begins, up to where
// it or another one ends it. A piece that is no tag is text as well: the second function says so.
template<typename AddText, typename AddTag>
void readMarkup(QStringView markup, AddText addText, AddTag addTag)
{
    while (!markup.isEmpty()) {
        const QStringView text = take(markup, [](QChar one) { return one != QLatin1Char('<'); });
        if (!text.isEmpty())
            addText(text);
        if (markup.isEmpty())
            break;
        int length = 1;
        while (length < markup.size() && markup.at(length) != QLatin1Char('<')
               && markup.at(length - 1) != QLatin1Char('>'))
            ++length;
        const QStringView piece = markup.left(length);
        markup = markup.mid(length);
        if (!addTag(piece))
            addText(piece);
    }
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

// At most so much of what was escaped; no tag, entity or character is cut in two.
QString beginning(const QString &markup, int length)
{
    QString text = shortened(markup, length);
    for (const auto &[begin, end] : { std::pair('<', '>'), std::pair('&', ';') }) {
        const int start = text.lastIndexOf(QLatin1Char(begin));
        if (start > text.lastIndexOf(QLatin1Char(end)))
            text.truncate(start);
    }
    return text;
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
        readMarkup(
                body, [this](QStringView text) { _addText(decoded(text)); },
                [this](QStringView piece) { return _addTag(Tag(piece)); });
        while (!_open.isEmpty())
            _close(_open.constLast());
        _out.squeeze(); // It is kept.
        return _out;
    }

private:
    void _addText(const QString &text)
    {
        if (_out.size() >= mostStyled)
            return;
        const QString markup = escaped(withoutPiledMarks(text, &_pile));
        if (!_add(markup))
            _out += beginning(markup, mostStyled - int(_out.size()));
    }

    // All of it or nothing.
    bool _add(const QString &markup)
    {
        const bool fits = _out.size() + markup.size() <= mostStyled;
        if (fits)
            _out += markup;
        return fits;
    }

    // Whether it is one that counts.
    bool _addTag(const Tag &tag)
    {
        const QString &name = tag.name;
        if (name == QLatin1String("br"))
            _add(QStringLiteral("<br/>"));
        else if (name == QLatin1String("img"))
            _addText(tag.attribute(QStringLiteral("alt")));
        else if (name == QLatin1String("a"))
            tag.ends ? _close(name) : _beginLink(tag);
        else if (name == QLatin1String("b") || name == QLatin1String("i")
                 || name == QLatin1String("u"))
            tag.ends ? _close(name) : _begin(name, QLatin1Char('<') + name + QLatin1Char('>'));
        else
            return false;
        return true;
    }

    void _beginLink(const Tag &tag)
    {
        const QString address = tag.attribute(QStringLiteral("href"));
        if (!address.isEmpty() && ++_links <= mostLinks)
            _begin(tag.name, linkStart(address));
    }

    void _begin(const QString &name, const QString &start)
    {
        if (!start.isEmpty() && !_open.contains(name) && _add(start))
            _open += name;
    }

    // Ends what was begun inside it as well.
    void _close(const QString &name)
    {
        while (_open.contains(name))
            _out += QLatin1String("</") + _open.takeLast() + QLatin1Char('>');
    }

    QString _out;
    QStringList _open;
    int _links = 0;
    int _pile = 0;
};

class Reader
{
public:
    QString plain(const QString &markup)
    {
        readMarkup(
                markup, [this](QStringView text) { _addText(decoded(text)); },
                [this](QStringView piece) { return _addTag(Tag(piece), piece); });
        return withoutPiledMarks(_out).trimmed();
    }

private:
    void _addText(const QString &text)
    {
        if (!_hidden.isEmpty())
            return;
        for (const QChar character : text) {
            // A blank that keeps words together is one of the text.
            const bool blank = character.isSpace() && character != QChar(QChar::Nbsp);
            if (!blank)
                _out += character;
            else if (!_out.isEmpty() && !_out.at(_out.size() - 1).isSpace())
                _out += QLatin1Char(' ');
        }
    }

    bool _addTag(const Tag &tag, QStringView piece)
    {
        const bool declaration
                = piece.size() > 2 && piece.back() == QLatin1Char('>')
                  && (piece.at(1) == QLatin1Char('!') || piece.at(1) == QLatin1Char('?'));
        if (tag.name.isEmpty())
            return declaration;
        static const QStringList hidden { QStringLiteral("head"), QStringLiteral("script"),
                                          QStringLiteral("style"), QStringLiteral("title") };
        static const QStringList lines {
            QStringLiteral("br"),    QStringLiteral("dd"), QStringLiteral("div"),
            QStringLiteral("dt"),    QStringLiteral("h1"), QStringLiteral("h2"),
            QStringLiteral("h3"),    QStringLiteral("h4"), QStringLiteral("h5"),
            QStringLiteral("h6"),    QStringLiteral("hr"), QStringLiteral("li"),
            QStringLiteral("p"),     QStringLiteral("tr"), QStringLiteral("pre"),
            QStringLiteral("table"), QStringLiteral("ul"), QStringLiteral("ol")
        };
        if (!_hidden.isEmpty()) {
            if (tag.ends && tag.name == _hidden)
                _hidden.clear();
        } else if (!tag.ends && hidden.contains(tag.name)) {
            _hidden = tag.name;
        } else if (tag.name == QLatin1String("td") || tag.name == QLatin1String("th")) {
            _addText(QStringLiteral(" "));
        } else if (lines.contains(tag.name)) {
            _beginLine(tag.name == QLatin1String("br"));
        }
        return true;
    }

    // Two line breaks are an empty line, two paragraphs have none between them.
    void _beginLine(bool always)
    {
        if (_out.endsWith(QLatin1Char(' ')))
            _out.chop(1);
        if (always || (!_out.isEmpty() && !_out.endsWith(QLatin1Char('\n'))))
            _out += QLatin1Char('\n');
    }

    QString _out;
    QString _hidden; // Name of the tag whose content isn't shown.
};

} // namespace

QString styledBody(const QString &body)
{
    return Styler().styled(body);
}

QString plainText(const QString &markup)
{
    return Reader().plain(markup);
}

QString shortened(const QString &text, int length)
{
    if (text.size() <= length)
        return text;
    const bool cut = length > 0 && text.at(length - 1).isHighSurrogate();
    return text.left(cut ? length - 1 : length);
}

QString withoutPiledMarks(const QString &text, int *pile)
{
    int ownPile = 0;
    int &marks = pile ? *pile : ownPile;
    QString rest;
    rest.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const bool pair = text.at(i).isHighSurrogate() && i + 1 < text.size()
                          && text.at(i + 1).isLowSurrogate();
        const uint character
                = pair ? QChar::surrogateToUcs4(text.at(i), text.at(i + 1)) : text.at(i).unicode();
        marks = QChar::isMark(character) ? marks + 1 : 0;
        if (marks <= mostMarks)
            rest += QStringView(text).mid(i, pair ? 2 : 1);
        i += pair ? 1 : 0;
    }
    return rest;
}

} // namespace quorvane
