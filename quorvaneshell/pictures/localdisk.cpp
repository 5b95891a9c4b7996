#include "localdisk_p.h"

#include <QByteArrayList>
#include <QFile>
#include <QHash>

#include <climits>
#include <unistd.h>

namespace quorvane {

namespace {

constexpr int mostLinks = 40;

// Blanks and the like stand as octal numbers.
QByteArray unescaped(const QByteArray &field)
{
    QByteArray text;
    for (int i = 0; i < field.size(); ++i) {
        if (field.at(i) == '\\') {
            text += char(field.mid(i + 1, 3).toInt(nullptr, 8));
            i += 3;
        } else {
            text += field.at(i);
        }
    }
    return text;
}

// Where something is mounted, and whether it is local; the last at a place counts.
QHash<QByteArray, bool> mounts()
{
    QHash<QByteArray, bool> mounts;
    QFile file(QStringLiteral("/proc/self/mountinfo"));
    if (!file.open(QIODevice::ReadOnly))
        return mounts;
    const QByteArrayList lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QByteArrayList fields = line.split(' ');
        const int separator = int(fields.indexOf("-"));
        if (separator < 5 || fields.size() < separator + 3)
            continue;
        const QByteArray &type = fields.at(separator + 1);
        const bool isInMemory
                = type == "tmpfs" || type == "devtmpfs" || type == "ramfs" || type == "overlay";
        const bool isOfProgram = type == "fuse" || type.startsWith("fuse.");
        const bool isOnDisk
                = type == "zfs" || (!isOfProgram && fields.at(separator + 2).startsWith("/dev/"));
        mounts.insert(unescaped(fields.at(4)), isInMemory || isOnDisk);
    }
    return mounts;
}

// Empty for what is no link.
QByteArray linkTarget(const QByteArray &path)
{
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    const ssize_t size = readlink(path.constData(), target.data(), size_t(target.size()));
    return target.left(int(qMax(size, ssize_t(0))));
}

} // namespace

bool isOnLocalDisk(const QByteArray &path)
{
    const QHash<QByteArray, bool> known = mounts();
    if (path.size() >= PATH_MAX || known.isEmpty())
        return false;
    // Without links. Empty for the root, which is not looked up: nothing answers where that doesn't,
    // and within a container it need not be mounted at all.
    QByteArray place;
    QByteArrayList names = path.split('/');
    int links = 0;
    while (!names.isEmpty()) {
        const QByteArray name = names.takeFirst();
        if (name.isEmpty() || name == ".")
            continue;
        if (name == "..") {
            place.truncate(qMax(0, int(place.lastIndexOf('/'))));
            continue;
        }
        const QByteArray next = place + '/' + name;
        if (!known.value(next, true))
            return false;
        const QByteArray target = linkTarget(next);
        if (target.isEmpty()) {
            place = next;
            continue;
        }
        if (++links > mostLinks)
            return false;
        if (target.startsWith('/'))
            place.clear();
        names = target.split('/') + names;
    }
    return true;
}

} // namespace quorvane
