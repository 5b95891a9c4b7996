#include "processidentity_p.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

constexpr int largestFile = 1 << 16;
constexpr int largestMounts = 1 << 18;

class Descriptor
{
public:
    Descriptor(int folder, const char *name, int flags)
        : _number(openat(folder, name, flags | O_CLOEXEC))
    {
    }
    ~Descriptor()
    {
        if (_number >= 0)
            close(_number);
    }
    Q_DISABLE_COPY(Descriptor)

    bool isOpen() const { return _number >= 0; }
    int number() const { return _number; }

private:
    const int _number;
};

struct stat statusOf(const Descriptor &file)
{
    struct stat status
    {
    };
    if (fstat(file.number(), &status) != 0)
        status.st_mode = 0;
    return status;
}

// Regular files only, as those of /proc are, of which the sizes are unknown.
QByteArray readFile(int folder, const char *name, int largest = largestFile)
{
    // A pipe or a device would be opened otherwise.
    struct stat status
    {
    };
    if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode))
        return {};
    const Descriptor file(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (!file.isOpen() || !S_ISREG(statusOf(file).st_mode))
        return {};
    QByteArray data;
    char part[4096];
    while (data.size() < largest) {
        const ssize_t got = read(file.number(), part, sizeof part);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        data.append(part, int(got));
    }
    data.truncate(largest);
    return data;
}

QByteArray readLink(int folder, const char *name)
{
    char target[PATH_MAX];
    const ssize_t length = readlinkat(folder, name, target, sizeof target);
    return length > 0 ? QByteArray(target, int(length)) : QByteArray();
}

QByteArray processPath(qint64 pid)
{
    return "/proc/" + QByteArray::number(pid);
}

// Whether the root of a process and the file in it that tells of flatpak are memory of the kernel,
// as flatpak makes them. A file system of a program may let us wait for ever.
bool hasFlatpaksRoot(int process)
{
    bool isRootSafe = false;
    bool isFileSafe = true;
    const QByteArrayList mounts = readFile(process, "mountinfo", largestMounts).split('\n');
    for (const QByteArray &mount : mounts) {
        const QByteArray point = mount.split(' ').value(4);
        const bool isSafe = mount.contains(" - tmpfs ");
        if (point == "/")
            isRootSafe = isSafe;
        else if (point == "/.flatpak-info")
            isFileSafe = isSafe;
    }
    return isRootSafe && isFileSafe;
}

QString flatpakOf(int process)
{
    if (!hasFlatpaksRoot(process))
        return {};
    const Descriptor root(process, "root", O_PATH | O_DIRECTORY);
    return root.isOpen() ? flatpakApplication(readFile(root.number(), ".flatpak-info")) : QString();
}

QByteArray controlGroup(int process)
{
    const QByteArrayList lines = readFile(process, "cgroup").split('\n');
    QByteArray group;
    for (const QByteArray &line : lines) {
        // Of both hierarchies systemd uses its own where there is one.
        if (line.startsWith("0::") && group.isEmpty())
            group = line.mid(3);
        else if (line.contains(":name=systemd:"))
            group = line.mid(line.indexOf(":name=systemd:") + 14);
    }
    return group;
}

// The name in round brackets may have any in it.
qint64 parentOf(int process)
{
    const QByteArray status = readFile(process, "stat");
    return status.mid(status.lastIndexOf(')') + 2).split(' ').value(1).toLongLong();
}

// That of systemd: "\x2d" is a dash.
QString unescaped(const QByteArray &text)
{
    QByteArray plain;
    for (int i = 0; i < text.size(); ++i) {
        bool isHex = false;
        const int code = text.mid(i + 2, 2).toInt(&isHex, 16);
        if (text.mid(i, 2) == "\\x" && isHex) {
            plain += char(code);
            i += 3;
        } else {
            plain += text.at(i);
        }
    }
    return QString::fromUtf8(plain);
}

// The last part that is a unit with processes of its own.
QByteArray unitOf(const QByteArray &group)
{
    const QByteArrayList parts = group.trimmed().split('/');
    for (auto part = parts.crbegin(); part != parts.crend(); ++part) {
        if (part->endsWith(".scope") || part->endsWith(".service"))
            return *part;
    }
    return {};
}

} // namespace

QString flatpakApplication(const QByteArray &info)
{
    bool isApplication = false;
    const QByteArrayList lines = info.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith('['))
            isApplication = line.trimmed() == "[Application]";
        else if (isApplication && line.startsWith("name="))
            return QString::fromUtf8(line.mid(5).trimmed());
    }
    return {};
}

void setControlGroup(ProcessIdentity *process, const QByteArray &cgroup)
{
    const QByteArray unit = unitOf(cgroup);
    QByteArray name = unit.left(unit.lastIndexOf('.'));
    if (unit.startsWith("snap.")) {
        process->snap = unescaped(unit.split('.').value(1));
        return;
    }
    // By the bus: "dbus-:1.2-org.gnome.Nautilus@0.service".
    if (unit.startsWith("dbus-:") && unit.contains('@')) {
        name = name.left(name.indexOf('@'));
        process->unitIds = QStringList(unescaped(name.mid(name.indexOf('-', 6) + 1)));
        return;
    }
    // "app-launcher-id-random.scope", "app-launcher-id@random.service"; the launcher may be left out.
    if (!unit.startsWith("app-"))
        return;
    const int instance = int(name.indexOf('@'));
    QByteArrayList parts = (instance < 0 ? name : name.left(instance)).mid(4).split('-');
    if (unit.endsWith(".scope") && parts.size() > 1)
        parts.removeLast();
    process->unitIds += unescaped(parts.last());
    for (int first = parts.size() > 2 ? 1 : 0; first >= 0 && parts.size() > 1; --first)
        process->unitIds += unescaped(QByteArrayList(parts.mid(first)).join('-'));
}

ProcessIdentity processIdentity(qint64 pid)
{
    ProcessIdentity identity;
    if (pid <= 0)
        return identity;
    // What is read through it is of one process, whatever becomes of its number.
    const Descriptor process(AT_FDCWD, processPath(pid).constData(), O_PATH | O_DIRECTORY);
    if (!process.isOpen() || statusOf(process).st_uid != geteuid())
        return identity;
    QByteArray executable = readLink(process.number(), "exe");
    if (executable.isEmpty())
        return identity;
    if (executable.endsWith(" (deleted)"))
        executable.chop(10);
    identity.isKnown = true;
    identity.executable = QFile::decodeName(executable);
    identity.commandLine = readFile(process.number(), "cmdline").split('\0');
    identity.commandLine.removeAll({});

    const bool isContained
            = readLink(process.number(), "ns/mnt") != readLink(AT_FDCWD, "/proc/self/ns/mnt");
    if (isContained)
        identity.flatpak = flatpakOf(process.number());
    const QByteArray group = controlGroup(process.number());
    setControlGroup(&identity, group);
    // What is started from within a snap stays in its group.
    const QByteArray folder = "/snap/" + identity.snap.toUtf8() + '/';
    if (!isContained && !executable.contains(folder))
        identity.snap.clear();
    if (!identity.unitIds.isEmpty()) {
        const Descriptor parent(AT_FDCWD, processPath(parentOf(process.number())).constData(),
                                O_PATH | O_DIRECTORY);
        identity.beginsUnit = !parent.isOpen() || controlGroup(parent.number()) != group;
    }
    return identity;
}

} // namespace quorvane
