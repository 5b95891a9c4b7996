#pragma once

#include "cards.h"
#include "launcher.h"
#include "traybar.h"

#include <quorvaneshell/notifications/notificationpopups.h>

#include <QFrame>
#include <QLabel>
#include <QTimer>
#include <QToolButton>

// A bar at the lower edge of the screen: launcher, tray, notifications, clock.
class Panel : public QFrame
{
    Q_OBJECT

public:
    Panel();

private:
    void _place();

    quorvane::Notifications _notifications;
    Launcher _launcher;
    quorvane::NotificationPopups _new;
    Cards _centre { &_notifications, &_notifications, Qt::Popup };
    Cards _popups { &_new, &_notifications, Qt::ToolTip };
    QToolButton _start;
    TrayBar _tray;
    QToolButton _bell;
    QLabel _clock;
    QTimer _minute;
};
