#include "traybar.h"

#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <QWheelEvent>

using quorvane::Tray;

constexpr int side = 30;

class IconDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->text.clear();
    }
};

TrayBar::TrayBar()
{
    _shown.setSourceModel(&_tray);
    _shown.setFilterRole(Tray::StatusRole);
    _shown.setFilterRegularExpression(QStringLiteral("[^%1]").arg(Tray::Passive));
    setModel(&_shown);
    setItemDelegate(new IconDelegate(this));
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setWrapping(false);
    setGridSize({ side, side });
    setIconSize({ 22, 22 });
    setSelectionMode(QListView::NoSelection);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    const auto fit = [this] { setFixedSize(side * _shown.rowCount(), side); };
    connect(&_shown, &QAbstractItemModel::rowsInserted, this, fit);
    connect(&_shown, &QAbstractItemModel::rowsRemoved, this, fit);
    fit();
    connect(&_tray, &Tray::menuRequested, this, &TrayBar::_showMenu);
}

void TrayBar::mousePressEvent(QMouseEvent *event)
{
    const QString key = indexAt(event->pos()).data(Tray::KeyRole).toString();
    const QPoint place = viewport()->mapToGlobal(event->pos());
    if (event->button() == Qt::LeftButton)
        _tray.activate(key, place.x(), place.y());
    else if (event->button() == Qt::MiddleButton)
        _tray.secondaryActivate(key, place.x(), place.y());
    else if (event->button() == Qt::RightButton)
        _tray.contextMenu(key, place.x(), place.y());
}

void TrayBar::wheelEvent(QWheelEvent *event)
{
    const QString key = indexAt(event->position().toPoint()).data(Tray::KeyRole).toString();
    _tray.scroll(key, event->angleDelta().y());
}

void TrayBar::_showMenu(const QString &key, int x, int y)
{
    delete _popup;
    _popup = new quorvane::TrayMenuPopup(_tray.menu(key), this);
    _popup->open({ x, y });
}
