#include <quorvane/desktop/entries.h>

#include <QDebug>
#include <QDir>
#include <QFileInfo>

namespace {

QString keyOf(const QString &path)
{
    return QFileInfo(path).completeBaseName();
}

// The paths of the desktop files in a directory, in order of their names without regard to case:
// QDir::NoSort stands for the order of the QDir itself.
QStringList desktopFiles(const QDir &directory)
{
    const QStringList names
            = directory.entryList({ QStringLiteral("*.desktop") }, QDir::Files, QDir::NoSort);
    QStringList paths;
    paths.reserve(names.size());
    for (const QString &name : names)
        paths += directory.absoluteFilePath(name);
    return paths;
}

// The elements of first that a merge walk over both lists does not meet in second. The lists come
// in different orders, neither of them that of whole paths, and are not sorted for the walk: where
// the orders disagree a file counts as gone and as fresh, and is registered anew.
QStringList difference(const QStringList &first, const QStringList &second)
{
    QStringList result;
    auto one = first.cbegin();
    auto other = second.cbegin();
    while (one != first.cend() && other != second.cend()) {
        if (*one < *other) {
            result += *one++;
        } else {
            if (!(*other < *one))
                ++one;
            ++other;
        }
    }
    for (; one != first.cend(); ++one)
        result += *one;
    return result;
}

} // namespace

namespace xdg {

Entries::Entries(QObject *parent)
    : QObject(parent)
{
    connect(&_watcher, &QFileSystemWatcher::directoryChanged, this, &Entries::_directoryChanged,
            Qt::QueuedConnection);
}

Entries::~Entries() = default;

int Entries::add(const QString &path, bool replace)
{
    const QFileInfo file(path);
    const QString key = file.completeBaseName();
    if (!file.isFile() || file.suffix() != QLatin1String("desktop")) {
        qWarning() << path << "is not a desktop entry";
        return -1;
    }
    if (_entries.contains(key)) {
        if (!replace)
            return -1;
        unregister(path);
    }

    auto *entry = new Entry(path);
    connect(entry, &Entry::dataChanged, this, &Entries::_entryDataChanged);
    connect(entry, &Entry::raiseProcess, this, &Entries::raiseProcess);
    _entries.insert(key, entry);
    Q_EMIT startCreateEntry(_indexOf(key));
    // Looked up again: whoever heard the first signal may have changed the registry.
    Q_EMIT endCreateEntry(_indexOf(key));
    return 0;
}

int Entries::addDirectory(const QString &path, bool replace)
{
    const QString trimmed = path.trimmed();
    if (!QFileInfo(trimmed).isDir())
        return -1;
    const QStringList files = desktopFiles(QDir(trimmed));
    for (const QString &file : files)
        add(file, replace);
    _compact();
    _watcher.addPath(trimmed);
    return 0;
}

void Entries::unregister(const QString &path)
{
    const QString key = keyOf(path);
    const int id = _indexOf(key);
    Q_EMIT startRemoveEntry(id);
    if (const Entry *entry = _entries.value(key))
        _watcher.removePath(entry->path());
    _entries.remove(key);
    Q_EMIT endRemoveEntry(id);
}

Entry *Entries::getEntry(int id) const
{
    const int size = _entries.size();
    if (id < 0 || id >= size)
        return nullptr;
    // From the nearer end.
    return id < size / 2 ? *std::next(_entries.cbegin(), id)
                         : *std::prev(_entries.cend(), size - id);
}

QList<Entry *> Entries::getEntries()
{
    return _entries.values();
}

int Entries::count() const
{
    return _entries.size();
}

void Entries::_directoryChanged(const QString &path)
{
    const QDir directory(path);
    const QString prefix = directory.absolutePath();

    // A plain prefix: the entries of a neighbour whose name begins alike count as known here too.
    QStringList known;
    for (const Entry *entry : qAsConst(_entries)) {
        if (entry->path().startsWith(prefix, Qt::CaseSensitive))
            known += entry->path();
    }
    QStringList present;
    const QStringList files = desktopFiles(directory);
    for (const QString &file : files) {
        if (file.startsWith(prefix, Qt::CaseSensitive))
            present += file;
    }

    const QStringList gone = difference(known, present);
    const QStringList fresh = difference(present, known);
    for (const QString &file : gone)
        unregister(file);
    for (const QString &file : fresh)
        add(file, true);
}

void Entries::_entryDataChanged(QString key, QString value)
{
    if (const auto *entry = qobject_cast<Entry *>(sender()))
        Q_EMIT entryDataChanged(entry->appId(), key, value);
}

// Nodes made one after another lie scattered among what the entries allocate. A copy has them side
// by side, which makes every walk over a large map several times faster.
void Entries::_compact()
{
    QMap<QString, Entry *> compact = _entries;
    compact.detach();
    _entries.swap(compact);
}

// The rank of the key, -1 if it is not there. The walk goes both ways at once and ends at the nearer
// end of the map.
int Entries::_indexOf(const QString &key) const
{
    const auto found = _entries.constFind(key);
    if (found == _entries.cend())
        return -1;
    auto down = found;
    auto up = found;
    for (int steps = 0;; ++steps) {
        if (down == _entries.cbegin())
            return steps;
        if (++up == _entries.cend())
            return _entries.size() - 1 - steps;
        --down;
    }
}

} // namespace xdg
