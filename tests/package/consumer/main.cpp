#include <quorvane/desktop/desktopentries.h>
#include <quorvane/quorvane_version.h>

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    qputenv("XDG_DATA_DIRS", argv[1]);
    const xdg::DesktopEntries applications;
    qInfo("%s: %d applications", QUORVANE_VERSION_STRING, applications.rowCount());
    return applications.rowCount() == 0 ? 1 : 0;
}
