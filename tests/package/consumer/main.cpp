#include <quorvane/desktop/desktopentries.h>

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return xdg::DesktopEntries().rowCount() > 0 ? 0 : 1;
}
