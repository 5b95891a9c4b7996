#include "fuzz.h"

#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/desktopfilter.h>
#include <quorvane/desktop/entries.h>
#include <quorvane/desktop/entry.h>

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

// No case here calls start() or stop(): the file names the program.

static QString applications;

// Each entry has an inotify instance, and closing one takes the kernel milliseconds. Without them
// Qt polls, which no run here lives long enough to see.
extern "C" Q_DECL_EXPORT int inotify_init1(int)
{
    return -1;
}

extern "C" Q_DECL_EXPORT int inotify_init()
{
    return -1;
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    startApplication(argc, argv);
    static const QTemporaryDir home;
    for (const char *name : { "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME" })
        qputenv(name, home.path().toUtf8());
    applications = home.filePath("applications");
    require(home.isValid() && QDir().mkpath(applications));
    return 0;
}

static void write(const QString &path, const std::string &content)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly));
    file.write(content.data(), qint64(content.size()));
}

static void changed(QObject *entry, const QString &path)
{
    require(QMetaObject::invokeMethod(entry, "_desktopFileChanged", Q_ARG(QString, path)));
}

// One entry, read, and read again when its file has another content, is a directory, is gone.
static void readTwice(const QString &path, const std::string &before, const std::string &after,
                      const QStringList &keys)
{
    write(path, before);
    xdg::Entry entry(path);
    int reported = 0;
    int removed = 0;
    QObject::connect(&entry, &xdg::Entry::removed, [&] { ++removed; });
    QObject::connect(&entry, &xdg::Entry::dataChanged,
                     [&](const QString &key, const QString &value) {
                         require(keys.contains(key) && entry.data(key) == value);
                         ++reported;
                     });
    for (const QString &key : keys)
        entry.data(key);
    write(path, after);
    changed(&entry, path);
    const int once = reported;
    require(once <= keys.size());
    changed(&entry, path);
    require(reported == once && removed == 0);
    QFile::remove(path);
    changed(&entry, path);
    require(reported == once && removed == 1);
    const xdg::Entry copy(entry);
    for (const QString &key : keys)
        copy.data(key);
}

static void readRows(QAbstractItemModel &model, QSet<const xdg::Entry *> &made)
{
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int role = Qt::DisplayRole; role <= xdg::DesktopEntries::EntryRole + 1; ++role)
            model.data(model.index(row, 0), role);
        made += model.index(row, 0).data(xdg::DesktopEntries::EntryRole).value<const xdg::Entry *>();
    }
}

// The file in a directory of a model, then in none, with a filter on top.
static void listAndFilter(const QString &path, const std::string &content, const QStringList &keys)
{
    QSet<const xdg::Entry *> made;
    {
        write(path, content);
        xdg::DesktopEntries model;
        xdg::DesktopFilter filter;
        filter.setModel(&model);
        readRows(model, made);
        readRows(filter, made);
        require(model.rowCount() == 1 && model.categories().size() == 1);
        filter.setSection(keys.value(0).section('/', 0, 0));
        readRows(filter, made);
        filter.setSection(QString());
        filter.setCategory(model.categories().value(0));
        filter.setShowAll(true);
        readRows(filter, made);
        require(filter.rowCount() == int(!model.index(0, 0).data().toString().isEmpty()));
        model.appIdData(QFileInfo(path).completeBaseName(), keys.value(0));
        QFile::remove(path);
        turnEventLoop();
    }
    qDeleteAll(made);
}

static void registerByHand(const QString &path, const std::string &content, bool replace)
{
    QSet<xdg::Entry *> made;
    {
        write(path, content);
        xdg::Entries entries;
        QObject::connect(&entries, &xdg::Entries::startCreateEntry,
                         [&](int id) { made += entries.getEntry(id); });
        entries.addDirectory(applications, replace);
        require(entries.add(path, replace) == (replace ? 0 : -1));
        entries.unregister(path);
        entries.unregister(path);
        require(entries.count() == 0 && !entries.getEntry(0));
        QFile::remove(path);
    }
    qDeleteAll(made);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const bool replace = input.ConsumeBool();
    QStringList keys { "Desktop Entry/Icon", "Desktop Entry/Exec", "Desktop Entry/Name" };
    keys.prepend(takeString(input, 16));
    const std::string before = input.ConsumeRandomLengthString(4096);
    const std::string after = input.ConsumeRemainingBytesAsString();

    // QSettings shares what it has read of a path: each run has a path of its own.
    static int run = 0;
    const QString path = QStringLiteral("%1/%2.desktop").arg(applications).arg(++run);
    readTwice(path, before, after, keys);
    listAndFilter(path, after, keys);
    registerByHand(path, before, replace);
    return 0;
}
