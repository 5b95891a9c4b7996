#include "fuzz.h"

#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/desktopfilter.h>
#include <quorvane/desktop/entry.h>

#include "desktopfixture.h"

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

// A file in the directory of a model, with a filter on top: read, and read again when it has another
// content and when it is gone.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QString key = QString::fromStdString(input.ConsumeRandomLengthString(16));
    const QStringList keys { key, "Desktop Entry/Icon", "Desktop Entry/Exec", "Desktop Entry/Name" };
    // QSettings shares what it has read of a path: each run has a path of its own.
    static int run = 0;
    static const DesktopFixture fixture;
    const QString name = QString("home/applications/%1.desktop").arg(++run);
    const auto write = [&](const std::string &content) {
        return fixture.writeBytes(name, QByteArray::fromStdString(content));
    };
    const QString path = write(input.ConsumeRandomLengthString(4096));

    xdg::DesktopEntries model;
    xdg::DesktopFilter filter;
    filter.setModel(&model);
    filter.setShowAll(true);
    const auto *entry
            = model.index(0, 0).data(xdg::DesktopEntries::EntryRole).value<const xdg::Entry *>();
    int reported = 0;
    int removed = 0;
    QObject::connect(entry, &xdg::Entry::removed, [&] { ++removed; });
    QObject::connect(entry, &xdg::Entry::dataChanged, [&](const QString &of, const QString &now) {
        require(entry->data(of) == now);
        ++reported;
    });
    const auto read = [&] {
        QMetaObject::invokeMethod(const_cast<xdg::Entry *>(entry), "_desktopFileChanged",
                                  Q_ARG(QString, path));
        for (const QString &of : keys)
            entry->data(of);
        filter.setSection(keys.value(0).section('/', 0, 0));
        for (int role = 0; role <= xdg::DesktopEntries::EntryRole + 1; ++role)
            filter.index(0, 0).data(role);
        filter.setSection(QString());
        filter.setCategory(model.categories().value(0));
        require(filter.rowCount() == int(!model.index(0, 0).data().toString().isEmpty()));
        return std::exchange(reported, 0);
    };
    read();
    write(input.ConsumeRemainingBytesAsString());
    read();
    require(read() == 0 && removed == 0);
    QFile::remove(path);
    require(read() == 0 && removed == 1);
    delete entry;
    return 0;
}
