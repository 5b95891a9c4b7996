// A notification centre: a double click is the default action, or means that it has been read.

#include <quorvaneshell/notifications/notifications.h>

#include <QApplication>
#include <QListView>

using quorvane::Notifications;

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    Notifications notifications;

    QListView view;
    view.setModel(&notifications); // The title, the icon, and the text as a tip.
    QObject::connect(&view, &QListView::activated, &notifications, [&](const QModelIndex &index) {
        const uint id = index.data(Notifications::IdRole).toUInt();
        if (index.data(Notifications::HasDefaultRole).toBool())
            notifications.invoke(id, QStringLiteral("default"));
        else
            notifications.dismiss(id);
    });
    QObject::connect(&notifications, &Notifications::posted, &view, [&](uint id) {
        const QModelIndex index = notifications.index(notifications.indexOf(id));
        if (index.data(Notifications::UrgencyRole).toInt() == Notifications::Critical)
            QApplication::alert(&view);
    });
    view.show();
    return QApplication::exec();
}
