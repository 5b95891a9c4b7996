#define QT_NO_KEYWORDS
#include <gio/gdesktopappinfo.h>

#include <quorvane/basedir/basedir.h>
#include <quorvane/desktop/desktopentries.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QProcess>
#include <QSettings>

#include <cstdio>
#include <malloc.h>
#include <memory>
#include <string>
#include <vector>

// Lists the applications of the data directories once, in a process of its own, and prints the
// nanoseconds, the bytes of heap and the file descriptors that it took. The argument says how:
// through the library, with no more than the Qt objects that an entry is made of, or through GIO.
namespace {

struct Floor
{
    explicit Floor(const QString &path)
        : settings(path, QSettings::IniFormat)
        , watcher(QStringList(path))
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("wayland-egl"));
        environment.remove(QStringLiteral("QT_IM_MODULE"));
        process.setProcessEnvironment(environment);
    }

    QSettings settings;
    QFileSystemWatcher watcher;
    QProcess process;
};

int readModel(const xdg::DesktopEntries &model)
{
    int characters = 0;
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int role : { 258, 259, 260, 261, 263 })
            characters += model.data(model.index(row), role).toString().size();
    }
    return characters;
}

int readFloor(std::vector<std::unique_ptr<Floor>> *floors)
{
    int characters = 0;
    const QDir directory(xdg::dataHome() + QLatin1String("/applications"));
    const QStringList names = directory.entryList({ QStringLiteral("*.desktop") }, QDir::Files);
    for (const QString &name : names) {
        floors->push_back(std::make_unique<Floor>(directory.absoluteFilePath(name)));
        for (const char *key : { "Name", "Icon", "Categories", "NoDisplay", "Exec" }) {
            const QString path = QLatin1String("Desktop Entry/") + QLatin1String(key);
            characters += floors->back()->settings.value(path).toString().size();
        }
    }
    return characters;
}

int readGio()
{
    int characters = 0;
    for (GList *item = g_app_info_get_all(); item; item = item->next) {
        auto *info = G_APP_INFO(item->data);
        auto *desktop = G_DESKTOP_APP_INFO(item->data);
        gchar *icon = g_icon_to_string(g_app_info_get_icon(info));
        for (const char *text :
             { g_app_info_get_name(info), const_cast<const char *>(icon),
               g_desktop_app_info_get_categories(desktop), g_app_info_get_commandline(info) })
            characters += text ? static_cast<int>(std::string(text).size()) : 0;
        characters += g_desktop_app_info_get_nodisplay(desktop) ? 4 : 0;
        g_free(icon);
    }
    return characters;
}

int descriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const std::string how = argc > 1 ? argv[1] : "";
    const size_t bytesBefore = mallinfo2().uordblks + mallinfo2().hblkhd;
    const int descriptorsBefore = descriptors();

    QElapsedTimer timer;
    timer.start();
    std::unique_ptr<xdg::DesktopEntries> model;
    std::vector<std::unique_ptr<Floor>> floors;
    int characters = 0;
    if (how == "library") {
        model = std::make_unique<xdg::DesktopEntries>();
        characters = readModel(*model);
    } else if (how == "floor") {
        characters = readFloor(&floors);
    } else if (how == "gio") {
        characters = readGio();
    }
    const qint64 nanoseconds = timer.nsecsElapsed();
    if (characters == 0)
        return 1;
    std::printf("%lld %zu %d\n", nanoseconds,
                mallinfo2().uordblks + mallinfo2().hblkhd - bytesBefore,
                descriptors() - descriptorsBefore);
    std::fflush(stdout);
    // Nothing here needs a tidy end, and there may be thousands of objects.
    std::_Exit(0);
}
