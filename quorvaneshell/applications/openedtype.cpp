#include "openedtype_p.h"

#include "launchuri_p.h"

#include <quorvaneshell/pictures/localdisk_p.h>
#include <quorvaneshell/pictures/regularfile_p.h>

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QUrl>

namespace quorvane {

namespace {

// As much as any rule looks at.
constexpr qint64 beginning = 16 << 10;

QString folderType()
{
    return QStringLiteral("inode/directory");
}

QString typeByName(const QString &name)
{
    const QList<QMimeType> types = QMimeDatabase().mimeTypesForFileName(name);
    return types.isEmpty() ? folderType() : types.first().name();
}

QString fileType(const QByteArray &path)
{
    const QFileInfo file(QFile::decodeName(path));
    if (!isOnLocalDisk(path) || !file.exists())
        return typeByName(file.fileName());
    if (file.isDir())
        return folderType();
    if (!file.isFile())
        return {};
    const QByteArray data = readBeginning(file.filePath(), beginning);
    const QString type = QMimeDatabase().mimeTypeForFileNameAndData(file.fileName(), data).name();
    // A file that is still empty is one to write in.
    return type == QLatin1String("application/x-zerosize") ? QStringLiteral("text/plain") : type;
}

} // namespace

QString openedType(const QString &urlOrMimeType)
{
    const QByteArray path = launchPath(launchUri(urlOrMimeType));
    if (!path.isEmpty())
        return fileType(path);
    if (urlOrMimeType.contains(QLatin1Char(':')))
        return QStringLiteral("x-scheme-handler/") + QUrl(urlOrMimeType).scheme();
    return urlOrMimeType.section(QLatin1Char(';'), 0, 0).trimmed().toLower();
}

} // namespace quorvane
