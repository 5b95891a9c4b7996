// A notification centre in its smallest form: a list of what is pending.

#include <quorvane/notifications/notificationactions.h>
#include <quorvane/notifications/notificationmanager.h>

#include <QApplication>
#include <QListView>
#include <QSortFilterProxyModel>

using xdg::NotificationActions;
using xdg::NotificationManager;

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    NotificationManager manager;
    QSortFilterProxyModel rows; // A view counts right only behind a proxy.
    rows.setSourceModel(&manager);

    QListView view;
    view.setModel(&rows);
    view.show();

    // A double click chooses the first action, or dismisses what has none.
    NotificationActions actions;
    QObject::connect(&view, &QListView::activated, &manager, [&](const QModelIndex &index) {
        const uint id = index.data(NotificationManager::AppIdRole).toUInt();
        actions.setActionslist(index.data(NotificationManager::ActionsRole).toStringList());
        if (actions.rowCount() == 0)
            manager.close(id);
        else
            manager.returnAction(id, actions.index(0).data(NotificationActions::KeyRole).toString());
    });
    return QApplication::exec();
}
