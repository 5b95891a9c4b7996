#include "regularfile_p.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

FileStamp stampOf(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return {};
    return { status.st_dev, status.st_ino, status.st_size,
             status.st_ctim.tv_sec * 1'000'000'000LL + status.st_ctim.tv_nsec };
}

// The beginning of a file, or nothing of one that is larger.
enum TooLarge { IsCut, IsRefused };

QByteArray readOpened(int file, qint64 most, TooLarge tooLarge)
{
    struct stat status
    {
    };
    if (fstat(file, &status) != 0 || stampOf(status).isNull()
        || (tooLarge == IsRefused && status.st_size > most))
        return {};
    // No more than the file says that it has: some of the kernel's never end.
    QByteArray data(static_cast<int>(qMin<qint64>(status.st_size, most)), Qt::Uninitialized);
    int length = 0;
    while (length < data.size()) {
        const ssize_t got = read(file, data.data() + length, size_t(data.size() - length));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        length += static_cast<int>(got);
    }
    data.truncate(length);
    return data;
}

// Some devices do things when they are opened. What takes the file's place meanwhile is refused.
QByteArray readFile(const QString &path, qint64 most, TooLarge tooLarge)
{
    if (fileStamp(path).isNull())
        return {};
    const int file = open(QFile::encodeName(path).constData(),
                          O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file < 0)
        return {};
    const QByteArray data = readOpened(file, most, tooLarge);
    close(file);
    return data;
}

} // namespace

bool FileStamp::operator==(const FileStamp &other) const
{
    return device == other.device && inode == other.inode && size == other.size
           && changed == other.changed;
}

FileStamp fileStamp(const QString &path)
{
    struct stat status
    {
    };
    const bool isThere = !path.contains(QChar::Null)
                         && stat(QFile::encodeName(path).constData(), &status) == 0;
    return isThere ? stampOf(status) : FileStamp();
}

QByteArray readRegularFile(const QString &path, qint64 largest)
{
    if (path.startsWith(QLatin1Char(':'))) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) && file.size() <= largest ? file.readAll()
                                                                        : QByteArray();
    }
    return readFile(path, largest, IsRefused);
}

QByteArray readBeginning(const QString &path, qint64 most)
{
    return readFile(path, most, IsCut);
}

} // namespace quorvane
