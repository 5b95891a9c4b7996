#pragma once

#include <quorvaneshell/applications/applications.h>

#include <QFrame>
#include <QLineEdit>
#include <QListView>

// What is installed, found by typing and started by Enter or a click.
class Launcher : public QFrame
{
    Q_OBJECT

public:
    Launcher();

    void open();

private:
    void _select(int row);
    void _launch(const QModelIndex &index);

    quorvane::Applications _applications;
    QLineEdit _search;
    QListView _list;
};
