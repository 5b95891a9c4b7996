#include "countdowns_p.h"

namespace quorvane {

Countdowns::Countdowns()
{
    _timer.setSingleShot(true);
    _timer.setTimerType(Qt::PreciseTimer);
    connect(&_timer, &QTimer::timeout, this, &Countdowns::over);
}

void Countdowns::start(uint id, int milliseconds)
{
    Countdown &countdown = _countdowns[id];
    const qint64 time = milliseconds > 0 ? milliseconds : -1;
    if (countdown.holders > 0)
        countdown.rest = time;
    else
        _setDeadline(&countdown, time);
}

void Countdowns::hold(uint id)
{
    Countdown &countdown = _countdowns[id];
    if (++countdown.holders > 1)
        return;
    countdown.rest = countdown.deadline.remainingTime();
    countdown.deadline = QDeadlineTimer::Forever;
}

void Countdowns::release(uint id)
{
    const auto found = _countdowns.find(id);
    if (found == _countdowns.end() || found->holders == 0 || --found->holders > 0)
        return;
    constexpr qint64 least = 1000;
    _setDeadline(&*found, found->rest < 0 ? -1 : qMax(found->rest, least));
}

void Countdowns::remove(uint id)
{
    _countdowns.remove(id);
}

QSet<uint> Countdowns::takeOver()
{
    QSet<uint> ids;
    QDeadlineTimer next = QDeadlineTimer::Forever;
    for (auto countdown = _countdowns.begin(); countdown != _countdowns.end(); ++countdown) {
        if (countdown->deadline.hasExpired()) {
            countdown->deadline = QDeadlineTimer::Forever;
            ids += countdown.key();
        }
        next = qMin(next, countdown->deadline);
    }
    _startTimer(next);
    return ids;
}

void Countdowns::_setDeadline(Countdown *countdown, qint64 milliseconds)
{
    countdown->deadline = QDeadlineTimer(milliseconds, Qt::PreciseTimer);
    if (countdown->deadline < _next)
        _startTimer(countdown->deadline);
}

void Countdowns::_startTimer(QDeadlineTimer next)
{
    _next = next;
    if (next.isForever())
        _timer.stop();
    else
        _timer.start(int(next.remainingTime()));
}

} // namespace quorvane
