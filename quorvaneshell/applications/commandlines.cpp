#include "commandlines_p.h"

#include "launchuri_p.h"
#include "shellwords_p.h"

namespace quorvane {

namespace {

QByteArray fileText(char code, const QByteArray &uri, const FieldTexts &texts)
{
    const QByteArray path = launchPath(uri);
    const bool takesUri = code == 'u' || code == 'U';
    const QByteArray text = takesUri && (texts.keepsUris || path.isEmpty()) ? uri : path;
    return text.isEmpty() ? text : shellQuoted(text);
}

// Takes the files that it uses away.
QByteArray fieldText(char code, QByteArrayList *uris, const FieldTexts &texts)
{
    switch (code) {
    case 'f':
    case 'u':
        return uris->isEmpty() ? QByteArray() : fileText(code, uris->takeFirst(), texts);
    case 'F':
    case 'U': {
        QByteArrayList all;
        while (!uris->isEmpty())
            all += fileText(code, uris->takeFirst(), texts);
        all.removeAll({});
        return all.join(' ');
    }
    case 'i':
        return texts.icon.isEmpty() ? QByteArray() : "--icon " + shellQuoted(texts.icon);
    case 'c':
        return shellQuoted(texts.name);
    case 'k':
        return shellQuoted(texts.path);
    case '%':
        return "%";
    default:
        return {};
    }
}

QByteArray expanded(const QByteArray &exec, QByteArrayList *uris, const FieldTexts &texts)
{
    const int before = int(uris->size());
    QByteArray line;
    for (int i = 0; i < exec.size(); ++i) {
        if (exec.at(i) != '%')
            line += exec.at(i);
        else if (++i < exec.size())
            line += fieldText(exec.at(i), uris, texts);
    }
    if (before > 0 && uris->size() == before)
        line += ' ' + fieldText('f', uris, texts);
    return line;
}

} // namespace

QVector<QByteArrayList> commandLines(const QByteArray &exec, QByteArrayList uris,
                                     const FieldTexts &texts)
{
    QVector<QByteArrayList> lines;
    if (exec.trimmed().isEmpty())
        return lines;
    do {
        const QByteArrayList line = shellWords(expanded(exec, &uris, texts));
        if (line.isEmpty())
            return {};
        lines += line;
    } while (!uris.isEmpty());
    return lines;
}

} // namespace quorvane
