#pragma once

#include <quorvaneshell/tray/tray.h>
#include <quorvanewidgets/traymenupopup.h>

#include <QListView>
#include <QPointer>
#include <QSortFilterProxyModel>

// The items of the tray side by side.
class TrayBar : public QListView
{
    Q_OBJECT

public:
    TrayBar();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void _showMenu(const QString &key, int x, int y);

    quorvane::Tray _tray;
    QSortFilterProxyModel _shown; // Without those that are passive.
    QPointer<quorvane::TrayMenuPopup> _popup;
};
