// A tray in a window: clicks go to the items, and their menus open where the clicks were.

#include <quorvaneshell/tray/tray.h>
#include <quorvanewidgets/traymenupopup.h>

#include <QApplication>
#include <QListView>
#include <QToolTip>

#include <memory>

using quorvane::Tray;
using quorvane::TrayMenuPopup;

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    Tray tray;
    std::unique_ptr<TrayMenuPopup> popup;

    QListView view;
    view.setModel(&tray); // The title, the icon and the tool tip.
    view.setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(&view, &QListView::clicked, &tray, [&](const QModelIndex &index) {
        const QPoint place = QCursor::pos();
        tray.activate(index.data(Tray::KeyRole).toString(), place.x(), place.y());
    });
    QObject::connect(&view, &QListView::customContextMenuRequested, &tray, [&](const QPoint &at) {
        const QPoint place = view.viewport()->mapToGlobal(at);
        tray.contextMenu(view.indexAt(at).data(Tray::KeyRole).toString(), place.x(), place.y());
    });
    QObject::connect(&tray, &Tray::menuRequested, &view, [&](const QString &key, int x, int y) {
        popup = std::make_unique<TrayMenuPopup>(tray.menu(key));
        popup->open({ x, y });
    });
    QObject::connect(&tray, &Tray::failed, &view, [&](const QString &, const QString &message) {
        QToolTip::showText(QCursor::pos(), message.toHtmlEscaped());
    });
    view.show();
    return QApplication::exec();
}
