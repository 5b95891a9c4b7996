#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/desktopfilter.h>

#include <QApplication>
#include <QListView>

using xdg::DesktopEntries;

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    DesktopEntries applications; // Finds, reads and watches the desktop entries.
    xdg::DesktopFilter shown;    // Those with a name that are not hidden.
    shown.setModel(&applications);

    QListView view;
    view.setModel(&shown);
    QObject::connect(&view, &QListView::activated, &applications, [&](const QModelIndex &index) {
        applications.start(index.data(DesktopEntries::PathRole).toString());
    });
    view.show();
    return QApplication::exec();
}
