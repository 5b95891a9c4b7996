#include "fuzz.h"

#include <quorvaneshell/applications/commandlines_p.h>
#include <quorvaneshell/applications/launchuri_p.h>

#include <QUrl>

using namespace quorvane;

static QVariant anyTarget(FuzzedDataProvider &input)
{
    const auto text = QString::fromStdString(input.ConsumeRandomLengthString(200));
    return input.ConsumeBool() ? QVariant(text) : QVariant(QUrl(text));
}

// What a command line opens, from texts that may be anything.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    QByteArrayList uris;
    for (int left = input.ConsumeIntegralInRange(0, 4); left > 0; --left) {
        const QVariant target = anyTarget(input);
        const QByteArray uri = launchUri(target);
        if (uri.isEmpty())
            continue;
        require(uri.indexOf(':') > 0 && !uri.contains('\0') && !uri.contains(' '));
        // Whatever is in a path, it is that file which is opened.
        const QString text = target.toString();
        if (target.userType() == QMetaType::QString && text.startsWith('/'))
            require(launchPath(uri) == text.toLocal8Bit());
        uris += uri;
    }
    const FieldTexts texts { "icon", QByteArray::fromStdString(input.ConsumeRandomLengthString(20)),
                             "/e.desktop", input.ConsumeBool() };
    const auto exec = QByteArray::fromStdString(input.ConsumeRemainingBytesAsString());
    const QVector<QByteArrayList> lines = commandLines(exec, uris, texts);
    require(lines.size() <= uris.size() + 1);
    for (const QByteArrayList &line : lines)
        require(!line.isEmpty() && !exec.trimmed().isEmpty());
    return 0;
}
