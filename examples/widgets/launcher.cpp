#include "launcher.h"

#include <QMessageBox>
#include <QShortcut>
#include <QVBoxLayout>

using quorvane::Applications;

Launcher::Launcher()
{
    setWindowFlags(Qt::Popup);
    setAttribute(Qt::WA_NoMouseReplay); // The button that opens it does not open it again.
    resize(360, 480);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(&_search);
    layout->addWidget(&_list);
    _search.setPlaceholderText(tr("Search"));
    _list.setModel(&_applications);
    _list.setIconSize({ 32, 32 });
    _list.setUniformItemSizes(true);
    _list.setFocusPolicy(Qt::NoFocus);

    connect(&_search, &QLineEdit::textChanged, this, [this](const QString &text) {
        _applications.setSearch(text);
        _select(0);
    });
    for (const auto &[key, step] : { std::pair(Qt::Key_Up, -1), std::pair(Qt::Key_Down, 1) })
        connect(new QShortcut(key, this), &QShortcut::activated, this,
                [this, step = step] { _select(_list.currentIndex().row() + step); });
    connect(&_search, &QLineEdit::returnPressed, this, [this] { _launch(_list.currentIndex()); });
    connect(&_list, &QListView::clicked, this, &Launcher::_launch);
    connect(&_applications, &Applications::failed, this,
            [this](auto appId, auto message) { QMessageBox::warning(this, appId, message); });
}

void Launcher::open()
{
    _search.clear();
    _search.setFocus();
    _select(0);
    show();
}

void Launcher::_select(int row)
{
    _list.setCurrentIndex(_applications.index(qBound(0, row, _applications.count() - 1)));
}

void Launcher::_launch(const QModelIndex &index)
{
    hide();
    _applications.launch(index.data(Applications::AppIdRole).toString());
}
