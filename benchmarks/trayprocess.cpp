#include <quorvane/statusnotifier/statusnotifieritem.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include <QCoreApplication>

#include <cstdio>
#include <memory>

// trayprocess watcher|item: one peer of the host that is measured.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    std::unique_ptr<QObject> peer;
    if (QCoreApplication::arguments().value(1) == QLatin1String("watcher"))
        peer = std::make_unique<xdg::StatusNotifierWatcher>();
    else
        peer = std::make_unique<xdg::StatusNotifierItem>();
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
