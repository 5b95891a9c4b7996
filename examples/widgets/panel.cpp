#include "panel.h"

#include <QHBoxLayout>
#include <QScreen>
#include <QTime>

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
    const auto showCount
            = [this] { _bell.setText(tr("Notifications (%1)").arg(_notifications.count())); };
    connect(&_notifications, &quorvane::Notifications::countChanged, this, showCount);
    const auto showTime = [this] {
        const QTime now = QTime::currentTime();
        _clock.setText(now.toString(QStringLiteral("hh:mm")));
        _minute.start((60 - now.second()) * 1000);
    };
    connect(&_minute, &QTimer::timeout, this, showTime);
    connect(screen(), &QScreen::geometryChanged, this, &Panel::_place);
    showCount();
    showTime();
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
