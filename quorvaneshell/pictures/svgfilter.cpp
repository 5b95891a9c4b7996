#include "svgfilter_p.h"

#include <QBuffer>
#include <QHash>
#include <QSet>
#include <QTransform>
#include <QVector>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace quorvane {

namespace {

constexpr int mostBytes = 1 << 20;
constexpr int mostElements = 20000;
constexpr int mostAttributes = 128;
constexpr int mostStops = 256; // Qt sorts them one by one.
constexpr int mostGradients = 1000;
constexpr int mostClasses = 8;
constexpr int deepest = 64;
constexpr int longestValue = 1000;
constexpr int mostEntities = 256;
constexpr int longestEntity = 24;
constexpr int mostTextLetters = 1000;
constexpr int mostDigits = 7;
// Sides of the picture: Qt clips what reaches further, each line against each other, and what
// reaches much further takes whatever memory it likes.
constexpr double farAway = 4;
constexpr double furthest = 10000;
constexpr int fewNumbers = 64;

using Attributes = QHash<QString, QString>;

struct Node
{
    QString name;
    Attributes attributes;
    QString text;
    std::vector<int> children;
};

const QSet<QString> &elements()
{
    static const QSet<QString> names {
        QStringLiteral("svg"),     QStringLiteral("g"),
        QStringLiteral("a"),       QStringLiteral("switch"),
        QStringLiteral("defs"),    QStringLiteral("use"),
        QStringLiteral("path"),    QStringLiteral("rect"),
        QStringLiteral("circle"),  QStringLiteral("ellipse"),
        QStringLiteral("line"),    QStringLiteral("polyline"),
        QStringLiteral("polygon"), QStringLiteral("linearGradient"),
        QStringLiteral("stop"),    QStringLiteral("radialGradient"),
        QStringLiteral("image"),   QStringLiteral("solidColor"),
        QStringLiteral("text"),    QStringLiteral("tspan"),
        QStringLiteral("style"),
    };
    return names;
}

// What a style sheet may say, too.
const QSet<QString> &properties()
{
    static const QSet<QString> names {
        QStringLiteral("color"),
        QStringLiteral("display"),
        QStringLiteral("fill"),
        QStringLiteral("fill-opacity"),
        QStringLiteral("fill-rule"),
        QStringLiteral("font-family"),
        QStringLiteral("font-size"),
        QStringLiteral("font-style"),
        QStringLiteral("font-weight"),
        QStringLiteral("opacity"),
        QStringLiteral("solid-color"),
        QStringLiteral("solid-opacity"),
        QStringLiteral("stop-color"),
        QStringLiteral("stop-opacity"),
        QStringLiteral("stroke"),
        QStringLiteral("stroke-dasharray"),
        QStringLiteral("stroke-linecap"),
        QStringLiteral("stroke-dashoffset"),
        QStringLiteral("stroke-linejoin"),
        QStringLiteral("stroke-miterlimit"),
        QStringLiteral("stroke-opacity"),
        QStringLiteral("stroke-width"),
        QStringLiteral("text-anchor"),
        QStringLiteral("visibility"),
    };
    return names;
}

const QSet<QString> &geometry()
{
    static const QSet<QString> names {
        QStringLiteral("cx"),        QStringLiteral("cy"),      QStringLiteral("d"),
        QStringLiteral("fx"),        QStringLiteral("fy"),      QStringLiteral("gradientTransform"),
        QStringLiteral("height"),    QStringLiteral("offset"),  QStringLiteral("points"),
        QStringLiteral("r"),         QStringLiteral("rx"),      QStringLiteral("ry"),
        QStringLiteral("transform"), QStringLiteral("viewBox"), QStringLiteral("width"),
        QStringLiteral("x"),         QStringLiteral("x1"),      QStringLiteral("x2"),
        QStringLiteral("y"),         QStringLiteral("y1"),      QStringLiteral("y2"),
    };
    return names;
}

const QSet<QString> &others()
{
    static const QSet<QString> names {
        QStringLiteral("class"), QStringLiteral("gradientUnits"), QStringLiteral("href"),
        QStringLiteral("id"),    QStringLiteral("spreadMethod"),  QStringLiteral("style"),
    };
    return names;
}

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// One after another the numbers of a list, of a path or of a transform, and the letter before each.
class Numbers
{
public:
    explicit Numbers(const QString &text)
        : _text(text)
    {
    }
    // False at the end.
    bool next()
    {
        const int size = _text.size();
        for (; _at < size; ++_at) {
            const QChar c = _text.at(_at);
            if (c.isLetter()) {
                isClosed = isClosed || c.toLower() == QLatin1Char('z');
                letter = c;
                isFirst = true;
            } else if (isDigit(c) || c == QLatin1Char('.')) {
                break;
            }
        }
        if (_at >= size)
            return false;
        const int before = _at > 0 ? _at - 1 : 0;
        const bool isNegative = _text.at(before) == QLatin1Char('-');
        const int from = _at;
        while (_at < size && isDigit(_text.at(_at)))
            ++_at;
        const int digits = _at - from;
        if (_at < size && _text.at(_at) == QLatin1Char('.'))
            ++_at;
        while (_at < size && isDigit(_text.at(_at)))
            ++_at;
        _skipExponent();
        value = digits > mostDigits ? HUGE_VAL
                                    : QStringView(_text).mid(from, qMin(_at - from, 40)).toDouble();
        if (isNegative)
            value = -value;
        return true;
    }

    QChar letter;          // The last one before the number,
    bool isFirst = false;  // and whether there is no number between, which the caller resets.
    bool isClosed = false; // Whether a path returned to its start before it, likewise.
    double value = 0;

private:
    void _skipExponent()
    {
        int at = _at;
        if (at >= _text.size() || _text.at(at).toLower() != QLatin1Char('e'))
            return;
        ++at;
        if (at < _text.size()
            && (_text.at(at) == QLatin1Char('-') || _text.at(at) == QLatin1Char('+')))
            ++at;
        if (at >= _text.size() || !isDigit(_text.at(at)))
            return;
        while (at < _text.size() && isDigit(_text.at(at)))
            ++at;
        _at = at;
    }

    const QString &_text;
    int _at = 0;
};

bool isModerate(const QString &text)
{
    Numbers numbers(text);
    while (numbers.next()) {
        if (!(std::abs(numbers.value) < std::pow(10, mostDigits)))
            return false;
    }
    return true;
}

double number(const Attributes &attributes, const QString &name, double whole)
{
    const QString text = attributes.value(name);
    Numbers numbers(text);
    if (!numbers.next())
        return 0;
    return text.endsWith(QLatin1Char('%')) ? numbers.value * whole / 100 : numbers.value;
}

// A length in pixels as Qt takes it, or 0.
double length(const QString &text)
{
    static const QHash<QString, double> units {
        { QString(), 1 },
        { QStringLiteral("px"), 1 },
        { QStringLiteral("pt"), 1.25 },
        { QStringLiteral("pc"), 15 },
        { QStringLiteral("mm"), 3.543307 },
        { QStringLiteral("cm"), 35.43307 },
        { QStringLiteral("in"), 90 },
    };
    int end = text.size();
    while (end > 0 && !isDigit(text.at(end - 1)) && text.at(end - 1) != QLatin1Char('.'))
        --end;
    return QStringView(text).left(end).toDouble() * units.value(text.mid(end).trimmed(), 0);
}

QTransform transformOf(const QString &text)
{
    QTransform result;
    QTransform part;
    const QStringList functions = text.split(QLatin1Char(')'));
    for (const QString &function : functions) {
        const int open = function.indexOf(QLatin1Char('('));
        const QString list = function.mid(open + 1);
        QVector<double> values;
        for (Numbers numbers(list); numbers.next();)
            values.append(numbers.value);
        const int count = values.size();
        values.resize(6);
        const QString name = function.left(qMax(0, open));
        if (name.contains(QLatin1String("matrix"))) {
            part = { values.at(0), values.at(1), values.at(2),
                     values.at(3), values.at(4), values.at(5) };
        } else if (name.contains(QLatin1String("translate"))) {
            part = QTransform::fromTranslate(values.at(0), values.at(1));
        } else if (name.contains(QLatin1String("scale"))) {
            part = QTransform::fromScale(values.at(0), count > 1 ? values.at(1) : values.at(0));
        } else if (name.contains(QLatin1String("rotate"))) {
            part = QTransform::fromTranslate(values.at(1), values.at(2));
            part.rotate(values.at(0));
            part.translate(-values.at(1), -values.at(2));
        } else if (name.contains(QLatin1String("skew"))) {
            const double slope = std::tan(values.at(0) * 3.14159265 / 180);
            const bool isX = name.contains(QLatin1Char('X'));
            part = QTransform(1, isX ? 0 : slope, isX ? slope : 0, 1, 0, 0);
        } else {
            continue;
        }
        result = part * result;
    }
    return result;
}

// What a shape takes, at most.
struct Outline
{
    void add(QPointF point)
    {
        length += isEmpty ? 0 : std::abs(point.x() - last.x()) + std::abs(point.y() - last.y());
        last = point;
        left = isEmpty ? point.x() : qMin(left, point.x());
        right = isEmpty ? point.x() : qMax(right, point.x());
        top = isEmpty ? point.y() : qMin(top, point.y());
        bottom = isEmpty ? point.y() : qMax(bottom, point.y());
        isEmpty = false;
    }
    void add(const QRectF &rect)
    {
        add(rect.topLeft());
        add(rect.topRight());
        add(rect.bottomRight());
        add(rect.bottomLeft());
        add(rect.topLeft());
        numbers += 8;
    }

    bool isEmpty = true;
    int numbers = 0;
    double length = 0;
    double left = 0;
    double right = 0;
    double top = 0;
    double bottom = 0;
    QPointF last;
};

void addPath(const QString &d, Outline &outline)
{
    QPointF current;
    QPointF start;
    QPointF control; // Mirrored by the next smooth curve.
    QVector<double> values;
    Numbers numbers(d);
    while (numbers.next()) {
        const char letter = numbers.letter.toLatin1();
        const char command = char(numbers.letter.toLower().toLatin1());
        if (numbers.isFirst) {
            values.clear();
            if (numbers.isClosed)
                current = start;
        }
        numbers.isFirst = false;
        numbers.isClosed = false;
        values.append(numbers.value);
        ++outline.numbers;
        const int needed = command == 'c'                     ? 6
                           : command == 's' || command == 'q' ? 4
                           : command == 'h' || command == 'v' ? 1
                           : command == 'a'                   ? 7
                                                              : 2;
        if (values.size() < needed)
            continue;
        const bool isRelative = letter == command;
        const QPointF base = isRelative ? current : QPointF();
        if (command == 'h' || command == 'v') {
            const double value = values.at(0);
            current = command == 'h' ? QPointF(base.x() + value, current.y())
                                     : QPointF(current.x(), base.y() + value);
            outline.add(current);
        } else if (command == 'a') {
            const QPointF end = base + QPointF(values.at(5), values.at(6));
            // The radii grow until the arc reaches its end.
            const QPointF way = end - current;
            const double reach = 2
                                 * qMax(qMax(std::abs(values.at(0)), std::abs(values.at(1))),
                                        std::hypot(way.x(), way.y()));
            outline.add(QRectF(current - QPointF(reach, reach), QSizeF(2 * reach, 2 * reach)));
            current = end;
            outline.add(current);
        } else {
            if (command == 's' || command == 't') {
                control = 2 * current - control;
                outline.add(control);
            }
            for (int i = 0; i + 1 < needed; i += 2) {
                const QPointF point = base + QPointF(values.at(i), values.at(i + 1));
                if (i + 2 < needed || needed == 2)
                    control = command == 't' ? control : point;
                outline.add(point);
                current = point;
            }
            if (command == 'm')
                start = current;
        }
        if (command != 'c' && command != 's' && command != 'q' && command != 't')
            control = current;
        values.clear();
    }
}

Outline outlineOf(const Node &node, double whole)
{
    Outline outline;
    const auto value
            = [&](const char *name) { return number(node.attributes, QLatin1String(name), whole); };
    if (node.name == QLatin1String("path")) {
        addPath(node.attributes.value(QStringLiteral("d")), outline);
    } else if (node.name.startsWith(QLatin1String("poly"))) {
        const QString points = QLatin1Char('L') + node.attributes.value(QStringLiteral("points"));
        addPath(points, outline);
    } else if (node.name == QLatin1String("line")) {
        outline.add(QRectF(QPointF(value("x1"), value("y1")), QPointF(value("x2"), value("y2"))));
    } else if (node.name == QLatin1String("rect") || node.name == QLatin1String("image")) {
        outline.add({ value("x"), value("y"), value("width"), value("height") });
    } else if (node.name == QLatin1String("circle") || node.name == QLatin1String("ellipse")) {
        const double rx = qMax(value("r"), value("rx"));
        const double ry = qMax(value("r"), value("ry"));
        outline.add({ value("cx") - rx, value("cy") - ry, 2 * rx, 2 * ry });
        outline.numbers += 16;
    } else if (node.name.startsWith(QLatin1String("t"))) {
        outline.add({ 0, 0, whole, whole });
        outline.numbers += 100 * node.text.size();
    }
    return outline;
}

// Characters that no XML may hold, and that Qt's reader ends at.
QString readable(const QByteArray &svg)
{
    const bool isLatin = svg.left(100).toLower().contains("encoding=\"iso-8859-1\"");
    QString text = isLatin ? QString::fromLatin1(svg) : QString::fromUtf8(svg);
    for (QChar &c : text) {
        if ((c < QLatin1Char(' ') && !c.isSpace()) || c.isSurrogate() || c.unicode() >= 0xfffe)
            c = QLatin1Char(' ');
    }
    return text;
}

class Filter
{
public:
    Filter(const QByteArray &svg, const std::function<QImage(const QByteArray &)> &readImage)
        : _text(readable(svg))
        , _readImage(readImage)
    {
    }
    SvgPicture filtered();

private:
    bool _parse();
    bool _skipDeclaration();
    void _readEntities(int end);
    QString _unescaped(const QString &text);
    bool _startElement();
    bool _readAttributes(Attributes &attributes, bool &isEmpty);
    void _endElement();
    void _take(const QString &text);

    void _readSheet(const QString &sheet);
    void _declare(const QString &declarations, Attributes &into) const;
    void _resolve(Node &node);
    void _restrict(Node &node);
    void _findPaints(Node &node) const;
    QString _embedded(const QString &url);

    bool _measure(const Node &node, const QTransform &outer, bool isStroked, int depth);
    bool _add(const Node &node, const QTransform &transform, bool isStroked);
    void _write(const Node &node, QXmlStreamWriter &writer) const;

    const QString _text;
    const std::function<QImage(const QByteArray &)> &_readImage;
    int _at = 0;
    std::vector<Node> _nodes;
    std::vector<int> _open; // The elements around; in text of a style sheet -1 stands last.
    int _leftOut = 0;       // Depth within what is left out.
    QHash<QString, QString> _entities;
    int _entityLettersLeft = mostBytes;
    int _letters = 0;
    int _gradients = 0;
    int _visited = 0;
    QString _sheet;
    QHash<QString, Attributes> _rules; // By selector.
    QHash<QString, int> _ids;
    QRectF _view;
    double _weight = 1;
};

bool Filter::_skipDeclaration()
{
    const auto skipTo = [this](const char *end) {
        const int found = _text.indexOf(QLatin1String(end), _at);
        _at = found + int(std::strlen(end));
        return found >= 0;
    };
    const auto startsWith = [this](const char *start) {
        return QStringView(_text).mid(_at, 9).startsWith(QLatin1String(start));
    };
    if (startsWith("<!--")) {
        _at += 4;
        return skipTo("-->");
    }
    if (startsWith("<![CDATA[")) {
        const int from = _at + 9;
        const bool ends = skipTo("]]>");
        _take(_text.mid(from, _at - 3 - from));
        return ends;
    }
    if (startsWith("<?"))
        return skipTo("?>");
    const int bracket = _text.indexOf(QLatin1Char('['), _at);
    const int end = _text.indexOf(QLatin1Char('>'), _at);
    if (bracket < 0 || bracket > end)
        return skipTo(">");
    if (!skipTo("]"))
        return false;
    const int after = std::exchange(_at, bracket);
    _readEntities(after);
    _at = after;
    return skipTo(">");
}

// Old drawing programs keep styles in them. A value is taken as it stands: none contains another.
void Filter::_readEntities(int end)
{
    const QString start = QStringLiteral("<!ENTITY ");
    while (_entities.size() < mostEntities) {
        const int at = _text.indexOf(start, _at);
        int open = at < 0 ? end : at + start.size();
        while (open < end && _text.at(open) != QLatin1Char('"')
               && _text.at(open) != QLatin1Char('\''))
            ++open;
        const int close = open < end ? _text.indexOf(_text.at(open), open + 1) : end;
        if (close < 0 || close >= end)
            return;
        const QString name = _text.mid(at + start.size(), open - at - start.size()).trimmed();
        if (close - open <= longestValue)
            _entities.insert(name, _text.mid(open + 1, close - open - 1));
        _at = close;
    }
}

QString Filter::_unescaped(const QString &text)
{
    static const QHash<QString, QString> names { { QStringLiteral("lt"), QStringLiteral("<") },
                                                 { QStringLiteral("gt"), QStringLiteral(">") },
                                                 { QStringLiteral("amp"), QStringLiteral("&") },
                                                 { QStringLiteral("quot"), QStringLiteral("\"") },
                                                 { QStringLiteral("apos"), QStringLiteral("'") } };
    if (!text.contains(QLatin1Char('&')))
        return text;
    QString result;
    for (int at = 0; at < text.size(); ++at) {
        const int end = text.at(at) == QLatin1Char('&')
                                ? QStringView(text).mid(at, longestEntity).indexOf(QLatin1Char(';'))
                                : -1;
        if (end < 0) {
            result += text.at(at);
            continue;
        }
        const QString name = text.mid(at + 1, end - 1);
        const bool isHex = name.startsWith(QLatin1String("#x"));
        const uint code = isHex ? QStringView(name).mid(2).toUInt(nullptr, 16)
                                : QStringView(name).mid(1).toUInt();
        const QString value = names.value(name, _entities.value(name));
        if (name.startsWith(QLatin1Char('#')) && code >= ' ' && code < 0xd800)
            result += QChar(ushort(code));
        else if (_entityLettersLeft > value.size())
            result += value;
        _entityLettersLeft -= value.size();
        at += end;
    }
    return result;
}

void Filter::_take(const QString &text)
{
    if (_leftOut > 0 || _open.empty())
        return;
    if (_open.back() < 0) {
        _sheet += text;
        return;
    }
    Node &node = _nodes[size_t(_open.back())];
    if (!node.name.startsWith(QLatin1String("t")) || _letters >= mostTextLetters)
        return;
    QString letters = _unescaped(text);
    letters.truncate(mostTextLetters - _letters);
    node.text += letters;
    _letters += text.size();
}

bool Filter::_readAttributes(Attributes &attributes, bool &isEmpty)
{
    const auto at = [this] { return _at < _text.size() ? _text.at(_at) : QChar(); };
    const auto skipSpace = [&] {
        while (at().isSpace())
            ++_at;
    };
    for (int count = 0; count < mostAttributes; ++count) {
        skipSpace();
        isEmpty = at() == QLatin1Char('/');
        _at += isEmpty ? 1 : 0;
        if (at() == QLatin1Char('>')) {
            ++_at;
            return true;
        }
        const int from = _at;
        while (!at().isNull() && !at().isSpace() && at() != QLatin1Char('=')
               && at() != QLatin1Char('>'))
            ++_at;
        QString name = _text.mid(from, _at - from);
        skipSpace();
        if (at() != QLatin1Char('='))
            return false;
        ++_at;
        skipSpace();
        const QChar quote = at();
        const int end = _text.indexOf(quote, _at + 1);
        if ((quote != QLatin1Char('"') && quote != QLatin1Char('\'')) || end < 0)
            return false;
        if (name == QLatin1String("xlink:href"))
            name = QStringLiteral("href");
        if (properties().contains(name) || geometry().contains(name) || others().contains(name))
            attributes.insert(name, _unescaped(_text.mid(_at + 1, end - _at - 1)));
        _at = end + 1;
    }
    return false;
}

bool Filter::_startElement()
{
    const int from = ++_at;
    while (_at < _text.size() && !_text.at(_at).isSpace() && _text.at(_at) != QLatin1Char('/')
           && _text.at(_at) != QLatin1Char('>'))
        ++_at;
    Node node;
    node.name = _text.mid(from, _at - from);
    if (node.name.startsWith(QLatin1String("svg:")))
        node.name.remove(0, 4);
    bool isEmpty = false;
    if (!_readAttributes(node.attributes, isEmpty))
        return false;
    if (_nodes.empty() && node.name != QLatin1String("svg"))
        return false;
    const bool isWanted = _leftOut == 0 && elements().contains(node.name)
                          && (_open.empty() || _open.back() >= 0)
                          && (!_open.empty() || _nodes.empty());
    if (!isWanted) {
        _leftOut += isEmpty ? 0 : 1;
        return true;
    }
    if (node.name == QLatin1String("style")) {
        if (!isEmpty)
            _open.push_back(-1);
        return true;
    }
    if (_nodes.size() >= mostElements || int(_open.size()) >= deepest)
        return false;
    if (!_open.empty()) {
        std::vector<int> &siblings = _nodes[size_t(_open.back())].children;
        if (node.name == QLatin1String("stop") && siblings.size() >= mostStops)
            return false;
        siblings.push_back(int(_nodes.size()));
        if (node.name == QLatin1String("svg"))
            node.name = QStringLiteral("g");
    }
    if (node.name.endsWith(QLatin1String("Gradient")) && ++_gradients > mostGradients)
        return false;
    if (node.name == QLatin1String("a"))
        node.name = QStringLiteral("g");
    if (!isEmpty)
        _open.push_back(int(_nodes.size()));
    _nodes.push_back(std::move(node));
    return true;
}

void Filter::_endElement()
{
    const int end = _text.indexOf(QLatin1Char('>'), _at);
    _at = end < 0 ? _text.size() : end + 1;
    if (_leftOut > 0)
        --_leftOut;
    else if (!_open.empty())
        _open.pop_back();
}

bool Filter::_parse()
{
    while (_at < _text.size()) {
        const int from = _at;
        const int open = _text.indexOf(QLatin1Char('<'), _at);
        if (open < 0 || open + 1 >= _text.size())
            break;
        _take(_text.mid(from, open - from));
        _at = open;
        const QChar next = _text.at(open + 1);
        if (next == QLatin1Char('!') || next == QLatin1Char('?')) {
            if (!_skipDeclaration())
                return false;
        } else if (next == QLatin1Char('/')) {
            _endElement();
        } else if (!_startElement()) {
            return false;
        }
    }
    return !_nodes.empty();
}

void Filter::_declare(const QString &declarations, Attributes &into) const
{
    const QStringList list = declarations.split(QLatin1Char(';'));
    for (const QString &declaration : list) {
        const int colon = declaration.indexOf(QLatin1Char(':'));
        const QString name = declaration.left(qMax(0, colon)).trimmed();
        if (!properties().contains(name))
            continue;
        QString value = declaration.mid(colon + 1);
        value.truncate(value.indexOf(QLatin1Char('!')) < 0 ? value.size()
                                                           : value.indexOf(QLatin1Char('!')));
        into.insert(name, value.trimmed());
    }
}

// Rules of one element, class or id, as icons have them.
void Filter::_readSheet(const QString &sheet)
{
    int at = 0;
    for (;;) {
        const int open = sheet.indexOf(QLatin1Char('{'), at);
        const int close = sheet.indexOf(QLatin1Char('}'), at);
        if (close < 0)
            return;
        if (open >= 0 && open < close) {
            QString selectors = sheet.mid(at, open - at);
            while (selectors.contains(QLatin1String("*/"))) // A comment before them.
                selectors.remove(0, selectors.indexOf(QLatin1String("*/")) + 2);
            Attributes declared;
            _declare(sheet.mid(open + 1, close - open - 1), declared);
            const QStringList list = selectors.left(longestValue).split(QLatin1Char(','));
            for (const QString &selector : list) {
                Attributes &rule = _rules[selector.trimmed()];
                for (auto it = declared.cbegin(); it != declared.cend(); ++it)
                    rule.insert(it.key(), it.value());
            }
        }
        at = close + 1;
    }
}

void Filter::_resolve(Node &node)
{
    const QString style = node.attributes.take(QStringLiteral("style"));
    QStringList classes
            = node.attributes.take(QStringLiteral("class")).simplified().split(QLatin1Char(' '));
    classes = classes.mid(0, mostClasses);
    QStringList selectors { QStringLiteral("*"), node.name };
    for (const QString &name : std::as_const(classes))
        selectors += QLatin1Char('.') + name;
    for (const QString &name : std::as_const(classes))
        selectors += node.name + QLatin1Char('.') + name;
    selectors += QLatin1Char('#') + node.attributes.value(QStringLiteral("id"));
    for (const QString &selector : std::as_const(selectors)) {
        const Attributes rule = _rules.value(selector);
        for (auto it = rule.cbegin(); it != rule.cend(); ++it)
            node.attributes.insert(it.key(), it.value());
    }
    _declare(style, node.attributes);
}

QString Filter::_embedded(const QString &url)
{
    const int comma = url.indexOf(QLatin1Char(','));
    if (!url.startsWith(QLatin1String("data:image/"))
        || !QStringView(url).left(comma).endsWith(QLatin1String(";base64")))
        return {};
    const QImage image = _readImage(QByteArray::fromBase64(url.mid(comma + 1).toLatin1()));
    QByteArray png;
    QBuffer buffer(&png);
    if (image.isNull() || !image.save(&buffer, "PNG"))
        return {};
    return QLatin1String("data:image/png;base64,") + QString::fromLatin1(png.toBase64());
}

// Leaves only values that are harmless.
void Filter::_restrict(Node &node)
{
    const bool isImage = node.name == QLatin1String("image");
    for (auto it = node.attributes.begin(); it != node.attributes.end();) {
        const QString &name = it.key();
        QString &value = *it;
        bool isFine = value.size() <= longestValue || name == QLatin1String("d")
                      || name == QLatin1String("points");
        if (name == QLatin1String("href")) {
            if (isImage)
                value = _embedded(value);
            isFine = isImage ? !value.isEmpty() : isFine && value.startsWith(QLatin1Char('#'));
        } else if (geometry().contains(name) || name.startsWith(QLatin1String("stroke-"))
                   || name == QLatin1String("font-size")) {
            isFine = isFine && isModerate(value);
        } else if (value.contains(QLatin1String("url("))) {
            isFine = isFine && value.startsWith(QLatin1String("url(#"));
        }
        it = isFine ? std::next(it) : node.attributes.erase(it);
    }
}

// A paint that the picture hasn't is its fallback, or none. Qt would tell of it in the log.
void Filter::_findPaints(Node &node) const
{
    for (const QString &name : { QStringLiteral("fill"), QStringLiteral("stroke") }) {
        const QString value = node.attributes.value(name);
        const int end = value.indexOf(QLatin1Char(')'));
        if (!value.startsWith(QLatin1String("url(#")) || _ids.contains(value.mid(5, end - 5)))
            continue;
        const QString fallback = value.mid(end + 1).trimmed();
        node.attributes.insert(name,
                               end < 0 || fallback.isEmpty() ? QStringLiteral("none") : fallback);
    }
}

// What it costs, references followed.
bool Filter::_measure(const Node &node, const QTransform &outer, bool isStroked, int depth)
{
    if (++_visited > mostElements || depth > deepest)
        return false;
    const QTransform transform
            = transformOf(node.attributes.value(QStringLiteral("transform"))) * outer;
    const QString stroke = node.attributes.value(QStringLiteral("stroke"));
    isStroked = stroke.isEmpty() || stroke == QLatin1String("inherit")
                        ? isStroked
                        : stroke != QLatin1String("none");
    if (node.name == QLatin1String("use")) {
        const int target = _ids.value(node.attributes.value(QStringLiteral("href")).mid(1), -1);
        const QTransform moved
                = QTransform::fromTranslate(
                          number(node.attributes, QStringLiteral("x"), _view.width()),
                          number(node.attributes, QStringLiteral("y"), _view.height()))
                  * transform;
        return target < 0 || _measure(_nodes[size_t(target)], moved, isStroked, depth + 1);
    }
    if (!_add(node, transform, isStroked))
        return false;
    return std::all_of(node.children.cbegin(), node.children.cend(), [&](int child) {
        return _measure(_nodes[size_t(child)], transform, isStroked, depth + 1);
    });
}

bool Filter::_add(const Node &node, const QTransform &transform, bool isStroked)
{
    constexpr double perPixel = 5;  // Nanoseconds, of a gradient,
    constexpr double perNumber = 1; // of a line for each pixel of its surroundings,
    constexpr double outlines = 8;  // and how many of them the outline of a line has.
    const double whole = qMax(_view.width(), _view.height());
    const Outline outline = outlineOf(node, whole);
    if (outline.isEmpty)
        return true;
    double lines = outline.numbers / 2.0;
    QRectF rect(QPointF(outline.left, outline.top), QPointF(outline.right, outline.bottom));
    if (isStroked) {
        const double dash = number(node.attributes, QStringLiteral("stroke-dasharray"), whole);
        const double width = number(node.attributes, QStringLiteral("stroke-width"), whole);
        lines *= outlines;
        if (dash > 0)
            lines += outlines * outline.length / dash;
        rect.adjust(-width - 1, -width - 1, width + 1, width + 1);
    }
    const QRectF mapped = transform.mapRect(rect);
    const double reach = qMax(qMax(std::abs(mapped.left()), std::abs(mapped.right())),
                              qMax(std::abs(mapped.top()), std::abs(mapped.bottom())))
                         - qMax(std::abs(_view.x()), std::abs(_view.y()));
    if (!(reach < furthest * whole))
        return false;
    const QRectF seen = mapped & _view;
    const double area
            = seen.isValid() ? seen.width() * seen.height() / (_view.width() * _view.height()) : 0;
    _weight += area * (perPixel + perNumber * lines);
    if (reach > farAway * whole && outline.numbers > fewNumbers)
        _weight += 1e-4 * lines * lines;
    return true;
}

void Filter::_write(const Node &node, QXmlStreamWriter &writer) const
{
    if (node.name == QLatin1String("image") && !node.attributes.contains(QStringLiteral("href")))
        return;
    writer.writeStartElement(node.name);
    for (auto it = node.attributes.cbegin(); it != node.attributes.cend(); ++it)
        writer.writeAttribute(
                it.key() == QLatin1String("href") ? QStringLiteral("xlink:href") : it.key(), *it);
    writer.writeCharacters(node.text);
    for (const int child : node.children)
        _write(_nodes[size_t(child)], writer);
    writer.writeEndElement();
}

SvgPicture Filter::filtered()
{
    if (!_parse())
        return {};
    _readSheet(_sheet);
    for (Node &node : _nodes) {
        _resolve(node);
        _restrict(node);
        const QString id = node.attributes.value(QStringLiteral("id"));
        if (!id.isEmpty())
            _ids.insert(id, int(&node - _nodes.data()));
    }
    for (Node &node : _nodes)
        _findPaints(node);

    Attributes &root = _nodes.front().attributes;
    SvgPicture picture;
    picture.size = { length(root.value(QStringLiteral("width"))),
                     length(root.value(QStringLiteral("height"))) };
    QVector<double> view;
    const QString viewBox = root.value(QStringLiteral("viewBox"));
    for (Numbers numbers(viewBox); numbers.next();)
        view.append(numbers.value);
    if (view.size() == 4)
        _view = { view.at(0), view.at(1), view.at(2), view.at(3) };
    else
        _view = QRectF(QPointF(), picture.size);
    if (picture.size.isEmpty())
        picture.size = _view.size();
    if (!(_view.width() > 0.001) || !(_view.height() > 0.001) || picture.size.width() > 1e6
        || picture.size.height() > 1e6)
        return {};
    if (!_measure(_nodes.front(), {}, false, 0))
        return {};

    root.insert(QStringLiteral("viewBox"), QStringLiteral("%1 %2 %3 %4")
                                                   .arg(_view.x())
                                                   .arg(_view.y())
                                                   .arg(_view.width())
                                                   .arg(_view.height()));
    root.insert(QStringLiteral("width"), QString::number(picture.size.width()));
    root.insert(QStringLiteral("height"), QString::number(picture.size.height()));
    root.insert(QStringLiteral("xmlns"), QStringLiteral("http://www.w3.org/2000/svg"));
    root.insert(QStringLiteral("xmlns:xlink"), QStringLiteral("http://www.w3.org/1999/xlink"));
    QXmlStreamWriter writer(&picture.text);
    _write(_nodes.front(), writer);
    picture.weight = _weight;
    return picture;
}

} // namespace

SvgPicture filteredSvg(const QByteArray &svg,
                       const std::function<QImage(const QByteArray &)> &readImage)
{
    const QByteArray text = svg.startsWith("\xef\xbb\xbf") ? svg.mid(3) : svg;
    if (text.size() > mostBytes || !text.left(longestValue).trimmed().startsWith('<'))
        return {};
    return Filter(text, readImage).filtered();
}

} // namespace quorvane
