#include <quorvane/desktop/desktopentries.h>

#include <quorvane/basedir/basedir.h>
#include <quorvane/desktop/entrykeys_p.h>
#include <quorvane/desktop/process_p.h>
#include <quorvane/desktop/scan_p.h>

#include <QDebug>

namespace {

struct RoleOfKey
{
    QString (*key)();
    int role;
};

constexpr RoleOfKey rolesOfKeys[] = {
    { xdg::keys::icon, xdg::DesktopEntries::IconRole },
    { xdg::keys::name, xdg::DesktopEntries::NameRole },
    { xdg::keys::exec, xdg::DesktopEntries::ExecRole },
    { xdg::keys::categories, xdg::DesktopEntries::CategoryRole },
    { xdg::keys::keywords, xdg::DesktopEntries::KeywordsRole },
    { xdg::keys::noDisplay, xdg::DesktopEntries::NoDisplayRole },
};

// -1 for a key that no role shows.
int roleOf(const QString &key)
{
    for (const RoleOfKey &candidate : rolesOfKeys) {
        if (candidate.key() == key)
            return candidate.role;
    }
    return -1;
}

} // namespace

namespace xdg {

DesktopEntries::DesktopEntries(QObject *parent)
    : QAbstractListModel(parent)
{
    scanDirectories(&_entries, dataDirs(), dataHome(), QLatin1String("/applications"));

    connect(&_entries, &Entries::entryDataChanged, this, &DesktopEntries::_dataChanged);
    connect(&_entries, &Entries::raiseProcess, this, &DesktopEntries::raiseProcess);

    // Opening and closing of a row change both hang on the first signal of the registry's pair, so
    // the change is over for the views before the registry goes on.
    connect(
            &_entries, &Entries::startCreateEntry, &_entries,
            [this](int id) { beginInsertRows(QModelIndex(), id, id); }, Qt::DirectConnection);
    connect(
            &_entries, &Entries::startCreateEntry, &_entries,
            [this] {
                endInsertRows();
                Q_EMIT categoriesChanged(categories());
            },
            Qt::DirectConnection);
    connect(
            &_entries, &Entries::startRemoveEntry, &_entries,
            [this](int id) { beginRemoveRows(QModelIndex(), id, id); }, Qt::DirectConnection);
    connect(
            &_entries, &Entries::startRemoveEntry, &_entries,
            [this] {
                endRemoveRows();
                Q_EMIT categoriesChanged(categories());
            },
            Qt::DirectConnection);
}

DesktopEntries::~DesktopEntries() = default;

QStringList DesktopEntries::categories()
{
    QStringList categories;
    const QList<Entry *> entries = _entries.getEntries();
    for (const Entry *entry : entries) {
        const QString category = entry->data(keys::categories());
        if (!categories.contains(category, Qt::CaseSensitive))
            categories += category;
    }
    return categories;
}

int DesktopEntries::rowCount(const QModelIndex &parent) const
{
    Q_UNUSED(parent)
    return _entries.count();
}

QVariant DesktopEntries::data(const QModelIndex &index, int role) const
{
    if (index.row() > _entries.count())
        return QVariant();
    const Entry *entry = _entries.getEntry(index.row());
    const auto value = [entry](const QString &key) {
        return entry ? QVariant(entry->data(key)) : QVariant();
    };

    switch (role) {
    case PathRole:
    case DesktopFileRole:
        return entry ? QVariant(entry->path()) : QVariant();
    case Qt::DisplayRole:
    case NameRole:
    case AppNameRole:
        return value(keys::name());
    case IconRole:
        return value(keys::icon());
    case CategoryRole:
        return value(keys::categories());
    case NoDisplayRole:
        return value(keys::noDisplay());
    case KeywordsRole:
        return value(keys::keywords());
    case ExecRole:
        return value(keys::exec());
    case AppIdRole:
        return entry ? QVariant(entry->appId()) : QVariant();
    case EntryRole:
        return entry ? QVariant::fromValue(entry) : QVariant();
    default:
        qWarning() << "Not managed role" << role;
        return QVariant();
    }
}

QHash<int, QByteArray> DesktopEntries::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(PathRole, "path");
    names.insert(NameRole, "name");
    names.insert(IconRole, "appIcon");
    names.insert(CategoryRole, "category");
    names.insert(NoDisplayRole, "noDisplay");
    names.insert(KeywordsRole, "keywords");
    names.insert(ExecRole, "exec");
    names.insert(DesktopFileRole, "desktopFile");
    names.insert(AppIdRole, "appId");
    names.insert(AppNameRole, "appName");
    names.insert(EntryRole, "entry");
    return names;
}

bool DesktopEntries::_contains(QString path)
{
    const QList<Entry *> entries = _entries.getEntries();
    return std::any_of(entries.cbegin(), entries.cend(),
                       [&path](const Entry *entry) { return entry->path() == path; });
}

QStringList DesktopEntries::_getEntriesFrom(QString path)
{
    QStringList paths;
    const QList<Entry *> entries = _entries.getEntries();
    for (const Entry *entry : entries) {
        if (path.isEmpty() || entry->path().startsWith(path, Qt::CaseSensitive))
            paths += entry->path();
    }
    return paths;
}

void DesktopEntries::_dataChanged(QString appid, QString item, QString value)
{
    Q_UNUSED(value)
    if (item == keys::categories())
        Q_EMIT categoriesChanged(categories());
    const int role = roleOf(item);
    if (role < 0) {
        qWarning() << "XdgEntries::_dataChanged: Unknwon role " << item;
        return;
    }
    QList<Entry *> entries = _entries.getEntries();
    for (int row = 0; row < entries.size(); ++row) {
        if (entries.at(row)->appId() != appid)
            continue;
        Q_EMIT dataChanged(index(row, 0), index(row, 0), { role });
        // The walk goes on over the rows as they are when the listeners have done what they do.
        entries = _entries.getEntries();
    }
}

void DesktopEntries::start(QString path, const QStringList &args)
{
    const QList<Entry *> entries = _entries.getEntries();
    for (Entry *entry : entries) {
        if (entry->path() == path)
            entry->start(args);
    }
}

void DesktopEntries::stop(QString path, const QStringList &args)
{
    bool ok = false;
    const int pid = path.toInt(&ok, 10);
    const QList<Entry *> entries = _entries.getEntries();
    for (Entry *entry : entries) {
        if ((ok && entry->pid() == pid) || entry->path() == path) {
            entry->stop(args);
            return;
        }
    }
    if (ok)
        terminateProcess(pid);
}

QString DesktopEntries::appIdData(QString appid, QString key)
{
    const QList<Entry *> entries = _entries.getEntries();
    for (const Entry *entry : entries) {
        if (entry->appId() == appid)
            return entry->data(key);
    }
    return QString();
}

} // namespace xdg
