#pragma once

#include <QDeadlineTimer>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

namespace quorvane {

// The times of notifications, or of what shows them: when they are over, and who stops them.
class Countdowns : public QObject
{
    Q_OBJECT

public:
    Countdowns();

    // Counts from now on; 0 or less is for ever. One that is held begins when it is let go.
    void start(uint id, int milliseconds);
    // A held one stands still until all its holders have let go, and has a second then at least.
    void hold(uint id);
    void release(uint id);
    // Forgets its holders, too.
    void remove(uint id);
    // Those that are over, and count no more.
    QSet<uint> takeOver();

Q_SIGNALS:
    // There may be something to take.
    void over();

private:
    struct Countdown
    {
        QDeadlineTimer deadline = QDeadlineTimer::Forever;
        qint64 rest = -1; // Of a held one; below 0 for ever.
        int holders = 0;
    };

    void _setDeadline(Countdown *countdown, qint64 milliseconds);
    void _startTimer(QDeadlineTimer next);

    QHash<uint, Countdown> _countdowns;
    QDeadlineTimer _next = QDeadlineTimer::Forever; // Not after the first that is over.
    QTimer _timer;
};

} // namespace quorvane
