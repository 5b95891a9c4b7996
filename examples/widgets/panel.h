#pragma once

#include "cards.h"
#include "launcher.h"
#include "traybar.h"

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
    void _showTime();
    void _showCount();

    quorvane::Notifications _notifications;
    Launcher _launcher;
    Cards _centre { &_notifications, Cards::All };
    Cards _popups { &_notifications, Cards::New };
    QToolButton _start;
    TrayBar _tray;
    QToolButton _bell;
    QLabel _clock;
    QTimer _minute;
};
