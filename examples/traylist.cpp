#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include <QCoreApplication>
#include <QSortFilterProxyModel>
#include <QTextStream>

// A tray in a terminal: the registry and a host, which prints the items whenever they change.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);

    xdg::StatusNotifierWatcher watcher;
    xdg::StatusNotifierHost host;

    QSortFilterProxyModel rows;
    rows.setSourceModel(&host);

    const auto print = [&rows] {
        QTextStream out(stdout);
        out << rows.rowCount() << " items\n";
        for (int row = 0; row < rows.rowCount(); ++row) {
            const QModelIndex index = rows.index(row, 0);
            out << "  " << index.data(xdg::StatusNotifierHost::IdRole).toString() << ": "
                << index.data(xdg::StatusNotifierHost::StatusRole).toString() << '\n';
        }
    };
    QObject::connect(&rows, &QAbstractItemModel::rowsInserted, &rows, print);
    QObject::connect(&rows, &QAbstractItemModel::rowsRemoved, &rows, print);
    QObject::connect(&rows, &QAbstractItemModel::dataChanged, &rows, print);
    print();
    return QCoreApplication::exec();
}
