#include "fuzz.h"

#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/desktopfilter.h>
#include <quorvane/desktop/entry.h>

#include <QDir>
#include <QSet>
#include <QTemporaryDir>

// No case here calls start() or stop(): the file names the program.

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

static void write(const QString &path, const std::string &content)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly));
    file.write(content.data(), qint64(content.size()));
}

// One entry, read, and read again when its file has another content and when it is gone.
static void readAgain(const QString &path, const std::string &after, const QStringList &keys)
{
    xdg::Entry entry(path);
    int reported = 0;
    int removed = 0;
    QObject::connect(&entry, &xdg::Entry::removed, [&] { ++removed; });
    QObject::connect(&entry, &xdg::Entry::dataChanged, [&](const QString &key, const QString &now) {
        require(keys.contains(key) && entry.data(key) == now);
        ++reported;
    });
    const auto changed = [&] {
        reported = 0;
        QMetaObject::invokeMethod(&entry, "_desktopFileChanged", Q_ARG(QString, path));
    };
    for (const QString &key : keys)
        entry.data(key);
    write(path, after);
    changed();
    require(reported <= keys.size());
    changed();
    require(reported == 0 && removed == 0);
    QFile::remove(path);
    changed();
    require(reported == 0 && removed == 1);
}

// The file in a directory of a model, with a filter on top, then gone.
static void listAndFilter(const QString &path, const QStringList &keys)
{
    QSet<const xdg::Entry *> made;
    {
        xdg::DesktopEntries model;
        xdg::DesktopFilter filter;
        const auto readRows = [&made](const QAbstractItemModel &rows) {
            for (int row = 0; row < rows.rowCount(); ++row) {
                const QModelIndex index = rows.index(row, 0);
                for (int role = Qt::DisplayRole; role <= xdg::DesktopEntries::EntryRole + 1; ++role)
                    index.data(role);
                made += index.data(xdg::DesktopEntries::EntryRole).value<const xdg::Entry *>();
            }
        };
        filter.setModel(&model);
        readRows(model);
        require(model.rowCount() == 1 && model.categories().size() == 1);
        filter.setSection(keys.value(0).section('/', 0, 0));
        readRows(filter);
        filter.setSection(QString());
        filter.setCategory(model.categories().value(0));
        filter.setShowAll(true);
        require(filter.rowCount() == int(!model.index(0, 0).data().toString().isEmpty()));
        model.appIdData(QFileInfo(path).completeBaseName(), keys.value(0));
        QFile::remove(path);
        turnEventLoop();
    }
    qDeleteAll(made);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTemporaryDir home;
    for (const char *name : { "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME" })
        qputenv(name, home.path().toUtf8());
    QDir(home.path()).mkpath("applications");

    FuzzedDataProvider input(data, size);
    const QString key = QString::fromStdString(input.ConsumeRandomLengthString(16));
    const std::string before = input.ConsumeRandomLengthString(4096);
    const std::string after = input.ConsumeRemainingBytesAsString();
    const QStringList keys { key, "Desktop Entry/Icon", "Desktop Entry/Exec", "Desktop Entry/Name" };

    // QSettings shares what it has read of a path: each run has a path of its own.
    static int run = 0;
    const QString path = home.filePath(QStringLiteral("applications/%1.desktop").arg(++run));
    write(path, before);
    readAgain(path, after, keys);
    write(path, after);
    listAndFilter(path, keys);
    return 0;
}
