#pragma once

#include "traymenupopup.h"

#include <quorvaneshell/menus/traymenu.h>

#include <QAction>
#include <QHash>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QTimer>
#include <QVector>

namespace quorvane {

// The actions of a popup: one for each row of its menu, known by the row's id, and one for none.
class TrayMenuPopupPrivate : public QObject
{
    Q_OBJECT

public:
    TrayMenuPopupPrivate(TrayMenu *menu, TrayMenuPopup *popup);

    void open(const QPoint &place);
    void close();
    // Once for all that changes at a time.
    void layOutSoon();

    QPointer<TrayMenu> menu;

private:
    void _follow();
    void _takeOpened();
    void _takeFailed();
    void _takeDestroyed();
    void _prepareToShow();
    void _takeRows();
    void _arrange(const QVector<QAction *> &wanted);
    void _updateRows(int first, int last);
    QAction *_makeAction(int row, int id);
    QPointer<QMenu> _update(QAction *action, int row);
    QPointer<QMenu> _updateSubmenu(QAction *action, int row);
    void _choose(int id);
    bool _hasSomethingToShow() const;
    void _layOut();

    TrayMenuPopup *const _popup;
    QAction *const _placeholder;
    QHash<int, QAction *> _actions;
    QTimer _layingOut;
    QPoint _place;
    bool _isFollowing = false;
    bool _isOpen = false;
    bool _isAwaited = false; // To be shown at the place when the program has answered.
};

} // namespace quorvane
