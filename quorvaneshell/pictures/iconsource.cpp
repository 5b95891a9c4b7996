#include "iconsource_p.h"

#include <QUrl>
#include <QUrlQuery>

namespace quorvane {

namespace {

const QLatin1String start("image://quorvane/");
constexpr const char *parts[] = { "?color=", "?label=", "?missing=" };

QString encoded(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

QString decoded(const QString &text)
{
    return QUrl::fromPercentEncoding(text.toUtf8());
}

// Qt Quick decodes a question mark of a path, too: the query is what begins with the name of a part.
int queryOf(const QString &text)
{
    int first = -1;
    for (const char *part : parts) {
        const int at = int(text.indexOf(QLatin1String(part)));
        if (at >= 0 && (first < 0 || at < first))
            first = at;
    }
    return first;
}

// Whoever appends a part need not know whether the URL has one already.
QString joinedQuery(QString query)
{
    for (const char *part : parts) {
        const QString begun = QLatin1String(part);
        query.replace(begun, QLatin1Char('&') + begun.mid(1));
    }
    return query;
}

void readPath(const QString &path, IconSource &source)
{
    const QString kind = path.section(QLatin1Char('/'), 0, 0);
    const QString rest = path.section(QLatin1Char('/'), 1);
    const auto part = [&rest](int index) {
        const QString text = decoded(decoded(rest.section(QLatin1Char('/'), index, index)));
        return text == QLatin1String("-") ? QString() : text;
    };
    if (kind == QLatin1String("pixels")) {
        source.pixels = rest;
    } else if (kind == QLatin1String("themed")) {
        source.icon = part(0);
        source.folder = part(1);
        source.pixels = part(2);
    } else {
        source.icon = decoded(rest);
    }
}

void readQuery(const QString &text, IconSource &source)
{
    const QUrlQuery query(joinedQuery(text));
    const auto part = [&query](const char *name) {
        return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
    };
    source.color = QColor(part("color"));
    source.label = part("label");
    source.isEmptyIfMissing = part("missing") == QLatin1String("empty");
}

} // namespace

QString iconSource(const QString &icon, const QString &themePath, const QString &pixels,
                   const QString &stamp)
{
    if (icon.isEmpty())
        return pixels;
    if (themePath.isEmpty() && pixels.isEmpty() && stamp.isEmpty())
        return start + QLatin1String("icon/") + encoded(icon);
    // Twice, as Qt decodes what it can of a URL, even a slash, but never a percent sign.
    const quint64 number = pixelsNumber(pixels);
    QStringList parts { icon, themePath, number > 0 ? QString::number(number) : QString(), stamp };
    for (QString &part : parts)
        part = part.isEmpty() ? QStringLiteral("-") : encoded(encoded(part));
    return start + QLatin1String("themed/") + parts.join(QLatin1Char('/'));
}

QString pixelsSource(quint64 number)
{
    return start + QLatin1String("pixels/") + QString::number(number);
}

quint64 pixelsNumber(const QString &source)
{
    return source.section(QLatin1Char('/'), -1).toULongLong();
}

IconSource IconSource::of(const QString &text)
{
    IconSource source;
    if (text.startsWith(start)) {
        const QString rest = text.mid(start.size());
        const int query = queryOf(rest);
        readPath(query < 0 ? rest : rest.left(query), source);
        readQuery(query < 0 ? QString() : rest.mid(query + 1), source);
    } else {
        source.icon = text;
    }
    if (source.icon.startsWith(QLatin1String("file:")))
        source.icon = QUrl(source.icon).toLocalFile();
    if (!source.folder.startsWith(QLatin1Char('/')))
        source.folder.clear();
    return source;
}

} // namespace quorvane
