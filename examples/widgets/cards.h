#pragma once

#include <quorvaneshell/notifications/notifications.h>

#include <QFrame>
#include <QHash>
#include <QVBoxLayout>

// Notifications one below the other: all that is pending, or for a few seconds what is new.
class Cards : public QFrame
{
    Q_OBJECT

public:
    enum Kind { All, New };

    Cards(quorvane::Notifications *notifications, Kind kind);

    // The lower right corner, on the screen.
    void setCorner(const QPoint &corner);

private:
    void _show(uint id);
    void _take(uint id);
    QWidget *_card(uint id);
    void _fit();

    quorvane::Notifications *const _notifications;
    const Kind _kind;
    QVBoxLayout _layout;
    QHash<uint, QWidget *> _cards;
    QPoint _corner;
};
