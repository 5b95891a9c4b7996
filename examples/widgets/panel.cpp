#include "panel.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLocale>
#include <QScreen>

Panel::Panel()
{
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_X11NetWmWindowTypeDock);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 8, 2);
    layout->addWidget(&_start);
    layout->addStretch();
    layout->addWidget(&_tray);
    layout->addWidget(&_bell);
    layout->addWidget(&_clock);

    _start.setText(tr("Applications"));
    connect(&_start, &QToolButton::clicked, &_launcher, &Launcher::open);
    connect(&_bell, &QToolButton::clicked, &_centre, &QWidget::show);
    connect(&_notifications, &quorvane::Notifications::countChanged, this, &Panel::_showCount);
    connect(&_minute, &QTimer::timeout, this, &Panel::_showTime);
    connect(screen(), &QScreen::geometryChanged, this, &Panel::_place);
    _showCount();
    _showTime();
    _place();
}

void Panel::_place()
{
    constexpr int height = 40;
    const QRect whole = screen()->geometry();
    setGeometry(whole.left(), whole.bottom() + 1 - height, whole.width(), height);
    _launcher.move(geometry().topLeft() - QPoint(0, _launcher.height()));
    _centre.setCorner(geometry().topRight());
    _popups.setCorner(geometry().topRight());
}

void Panel::_showTime()
{
    const QDateTime now = QDateTime::currentDateTime();
    _clock.setText(now.toString(QStringLiteral("hh:mm")));
    _clock.setToolTip(QLocale().toString(now.date()));
    _minute.start((60 - now.time().second()) * 1000);
}

void Panel::_showCount()
{
    _bell.setText(tr("Notifications (%1)").arg(_notifications.count()));
}
