// How long a shell with a tray and notifications stands still at most: the longest gap of a timer
// of 16 milliseconds, a frame, while one item of the tray is stopped, one answers after ten seconds,
// both are clicked at, and 10,000 notifications are posted at once. The baseline has none of that.
//
// The items and the poster are this program again, started with what they are.

#include "table.h"

#include <quorvaneshell/notifications/notifications.h>
#include <quorvaneshell/tray/tray.h>

#include <benchmark/benchmark.h>

#include <QtDBus>

#include <csignal>

using namespace quorvane;

namespace {

constexpr int posts = 10000;
constexpr int frame = 16;
constexpr int slowAnswer = 10000;
constexpr int measuredTime = 12000;

// An item of the tray that has one value and answers each call late.
class SlowItem : public QDBusVirtualObject
{
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &bus) override
    {
        QTimer::singleShot(delay, [this, call, bus] {
            bus.send(call.createReply(QVariantMap { { "Id", "item" } }));
            delay = slowAnswer;
        });
        return true;
    }

    int delay = 0;
};

int runItem()
{
    SlowItem item;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerVirtualObject("/StatusNotifierItem", &item);
    QDBusMessage call = QDBusMessage::createMethodCall(
            "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
            "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierItem");
    bus.send(call << bus.baseService());
    return QCoreApplication::exec();
}

// Posts all and waits for all the answers.
int runPoster()
{
    int unanswered = posts;
    for (int i = 0; i < posts; ++i) {
        QDBusMessage call = QDBusMessage::createMethodCall(
                "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                "org.freedesktop.Notifications", "Notify");
        call.setArguments({ "Mail", 0u, "mail-unread", "New mail",
                            QString("From Anna, <b>number %1</b>").arg(i), QStringList(),
                            QVariantMap(), 0 });
        auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call));
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, qApp, [&unanswered] {
            if (--unanswered == 0)
                QCoreApplication::quit();
        });
    }
    return QCoreApplication::exec();
}

struct Child : QProcess
{
    explicit Child(const QString &role)
    {
        setProcessChannelMode(ForwardedErrorChannel);
        start(QCoreApplication::applicationFilePath(), { role });
    }
    ~Child() override
    {
        kill();
        waitForFinished();
    }
};

template<typename Condition>
void waitUntil(Condition condition)
{
    while (!condition())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

// The longest gap of the timer, until the time is over and the condition holds.
template<typename Condition>
double longestGap(Condition condition)
{
    qint64 longest = 0;
    QElapsedTimer gap;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        longest = qMax(longest, gap.nsecsElapsed());
        gap.start();
    });
    timer.start(frame);
    gap.start();
    QElapsedTimer whole;
    whole.start();
    waitUntil([&] { return whole.hasExpired(measuredTime) && condition(); });
    return double(longest) / 1e6;
}

void LongestGap(benchmark::State &state)
{
    for (auto _ : state) {
        Tray tray;
        Notifications notifications;
        waitUntil([&] { return tray.isRegistered() && notifications.isRegistered(); });
        Child stopped("item");
        waitUntil([&] { return tray.rowCount() == 1; });
        Child slow("item");
        waitUntil([&] { return tray.rowCount() == 2; });
        ::kill(pid_t(stopped.processId()), SIGSTOP);

        QTimer clicks;
        QObject::connect(&clicks, &QTimer::timeout, [&tray] {
            for (int row = 0; row < tray.rowCount(); ++row)
                tray.activate(tray.get(row).value("key").toString(), 1, 1);
        });
        clicks.start(100);
        Child poster("poster");
        state.counters["longest gap, ms"]
                = longestGap([&] { return poster.state() == QProcess::NotRunning; });
        if (notifications.rowCount() != notifications.limit())
            state.SkipWithError("notifications were lost");
        if (tray.get(0).value("responds").toBool())
            state.SkipWithError("the stopped item responds");
    }
}

void LongestGap_baseline(benchmark::State &state)
{
    for (auto _ : state)
        state.counters["longest gap, ms"] = longestGap([] { return true; });
}

BENCHMARK(LongestGap)->Iterations(1)->Repetitions(3);
BENCHMARK(LongestGap_baseline)->Iterations(1)->Repetitions(3);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QString role = QCoreApplication::arguments().value(1);
    if (role == "item")
        return runItem();
    if (role == "poster")
        return runPoster();
    return runBenchmarks(argc, argv) ? 0 : 1;
}
