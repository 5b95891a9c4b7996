#include <quorvaneshell/applications/applications.h>

#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolBar>

using quorvane::Applications;

// A launcher: type to search, Enter starts the best match, a double click any other.
int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    Applications applications;

    QMainWindow window;
    QLineEdit input;
    window.addToolBar(QString())->addWidget(&input);
    QListView view;
    view.setModel(&applications);
    window.setCentralWidget(&view);

    const auto launch = [&applications](const QModelIndex &index) {
        if (index.isValid())
            applications.launch(index.data(Applications::AppIdRole).toString());
    };
    QObject::connect(&input, &QLineEdit::textChanged, &applications, &Applications::setSearch);
    QObject::connect(&input, &QLineEdit::returnPressed, &applications,
                     [&] { launch(applications.index(0)); });
    QObject::connect(&view, &QListView::activated, &applications, launch);
    QObject::connect(&applications, &Applications::failed, &window,
                     [&window](auto, auto message) { window.statusBar()->showMessage(message); });
    window.show();
    return QApplication::exec();
}
