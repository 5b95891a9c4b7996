// What a posting program waits for, against a bare Qt adaptor in the same process that answers with
// a number, how many posts a second the service takes from a program that does not wait, and how long
// such a burst keeps the service's own event loop from its timers.
//
// The services are processes of their own, the plain manager and the Notifications of a shell: this
// program, started with the name of the class. They are called by their unique names. On several CPUs
// a round trip takes one of two times, as the scheduler places the three processes; on one, bus
// included, it is steady.

#include "table.h"

#include <quorvane/notifications/notificationmanager.h>

#include <quorvaneshell/notifications/notifications.h>

#include <benchmark/benchmark.h>

#include <QtDBus>

#include <chrono>

using namespace quorvane;

namespace {

const char interface[] = "org.freedesktop.Notifications";
const char path[] = "/org/freedesktop/Notifications";
const char barePath[] = "/bare";

// The least that answers the same call.
class BareAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    explicit BareAdaptor(QObject *parent)
        : QDBusAbstractAdaptor(parent)
    {
    }

public Q_SLOTS:
    uint Notify(const QString &, uint, const QString &, const QString &, const QString &,
                const QStringList &, const QVariantMap &, int)
    {
        return ++_number;
    }

    void CloseNotification(uint) { }

private:
    uint _number = 0;
};

// How late a timer of 16 ms is at most, from one question to the next.
class ClockAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.example.Clock")

public:
    explicit ClockAdaptor(QObject *parent)
        : QDBusAbstractAdaptor(parent)
    {
        _timer.setTimerType(Qt::PreciseTimer);
        connect(&_timer, &QTimer::timeout, this,
                [this] { _longest = qMax(_longest, _gap.restart()); });
    }

public Q_SLOTS:
    void start()
    {
        _longest = 0;
        _gap.start();
        _timer.start(16);
    }

    int stop()
    {
        _timer.stop();
        return int(qMax(_longest, _gap.elapsed()));
    }

private:
    QTimer _timer;
    QElapsedTimer _gap;
    qint64 _longest = 0;
};

template<typename Service>
int serve()
{
    const Service service;
    QObject bare;
    new BareAdaptor(&bare);
    new ClockAdaptor(&bare);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(barePath, &bare, QDBusConnection::ExportAdaptors);
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
    std::puts(qPrintable(bus.baseService()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}

// A service's process; ends with this object.
class Server
{
public:
    explicit Server(const char *className)
    {
        _process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        _process.start(QCoreApplication::applicationFilePath(), { className });
        _process.waitForReadyRead();
        name = QString::fromLatin1(_process.readLine()).trimmed();
    }
    ~Server()
    {
        _process.closeWriteChannel();
        _process.waitForFinished();
    }

    QString name;

private:
    QProcess _process;
};

const Server *manager = nullptr;
const Server *centre = nullptr;

QDBusMessage call(const Server *server, const QString &object, const QString &method,
                  const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(server->name, object, interface, method);
    message.setArguments(arguments);
    return message;
}

// A usual notification: two actions, two hints.
QDBusMessage post(const Server *server, const char *object)
{
    return call(server, object, "Notify",
                { "Mail", 0u, "mail-unread", "New mail", "From Anna, about tomorrow",
                  QStringList { "open", "Open", "later", "Later" },
                  QVariantMap { { "urgency", QVariant::fromValue(uchar(1)) },
                                { "category", "email.arrived" } },
                  0 });
}

uint answer(const QDBusMessage &message)
{
    return QDBusReply<uint>(QDBusConnection::sessionBus().call(message)).value();
}

void close(const Server *server, const char *object, uint id)
{
    QDBusConnection::sessionBus().call(call(server, object, "CloseNotification", { id }));
}

// Fills or empties the service until the given number is pending.
void setPending(const Server *server, int number)
{
    QDBusMessage list
            = QDBusMessage::createMethodCall(server->name, "/com/zovar/NotificationManager",
                                             "com.zovar.NotificationManager", "listPending");
    const auto bus = QDBusConnection::sessionBus();
    const QList<uint> pending = QDBusReply<QList<uint>>(bus.call(list)).value();
    for (int i = pending.size(); i < number; ++i)
        bus.send(post(server, path));
    for (const uint id : pending.mid(number))
        bus.send(call(server, path, "CloseNotification", { id }));
    bus.call(list);
}

// Only the post is timed. What it added is closed again, so that the number pending stays.
void roundTrip(benchmark::State &state, const Server *server, const char *object)
{
    setPending(server, int(state.range(0)));
    const QDBusMessage message = post(server, object);
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        const uint id = answer(message);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(elapsed.count());
        if (id == 0)
            state.SkipWithError("no answer");
        close(server, object, id);
    }
}

// A burst that does not wait, until the service has taken the last one.
void burst(benchmark::State &state, const Server *server, const char *object)
{
    const int number = int(state.range(0));
    const auto bus = QDBusConnection::sessionBus();
    const QDBusMessage message = post(server, object);
    const auto clock = [&](const char *method) {
        return bus.call(QDBusMessage::createMethodCall(server->name, barePath, "org.example.Clock",
                                                       method));
    };
    double longest = 0;
    for (auto _ : state) {
        setPending(server, 0);
        clock("start");
        const auto start = std::chrono::steady_clock::now();
        for (int i = 1; i < number; ++i)
            bus.send(message);
        answer(message);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(elapsed.count());
        longest = qMax(longest, QDBusReply<int>(clock("stop")).value() * 1.0);
    }
    state.SetItemsProcessed(state.iterations() * number);
    state.counters["longest gap, ms"] = longest;
}

void Notify(benchmark::State &state)
{
    roundTrip(state, manager, path);
}

void Notify_baseline(benchmark::State &state)
{
    roundTrip(state, manager, barePath);
}

void NotifyWithoutWaiting(benchmark::State &state)
{
    burst(state, manager, path);
}

void NotifyWithoutWaiting_baseline(benchmark::State &state)
{
    burst(state, manager, barePath);
}

void NotifyCentre(benchmark::State &state)
{
    roundTrip(state, centre, path);
}

void NotifyCentre_baseline(benchmark::State &state)
{
    roundTrip(state, centre, barePath);
}

void NotifyCentreWithoutWaiting(benchmark::State &state)
{
    burst(state, centre, path);
}

void NotifyCentreWithoutWaiting_baseline(benchmark::State &state)
{
    burst(state, centre, barePath);
}

void usual(benchmark::internal::Benchmark *benchmark)
{
    benchmark->UseManualTime()->Unit(benchmark::kMicrosecond)->Repetitions(9);
}

BENCHMARK(Notify)->Arg(0)->Arg(10000)->Apply(usual);
BENCHMARK(Notify_baseline)->Arg(0)->Arg(10000)->Apply(usual);
BENCHMARK(NotifyWithoutWaiting)->Arg(5000)->Apply(usual);
BENCHMARK(NotifyWithoutWaiting_baseline)->Arg(5000)->Apply(usual);
BENCHMARK(NotifyCentre)->Arg(0)->Arg(1000)->Apply(usual);
BENCHMARK(NotifyCentre_baseline)->Arg(0)->Arg(1000)->Apply(usual);
BENCHMARK(NotifyCentreWithoutWaiting)->Arg(10000)->Apply(usual);
BENCHMARK(NotifyCentreWithoutWaiting_baseline)->Arg(10000)->Apply(usual);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QString className = QCoreApplication::arguments().value(1);
    if (className == QLatin1String("manager"))
        return serve<xdg::NotificationManager>();
    if (className == QLatin1String("centre"))
        return serve<Notifications>();

    const Server managerServer("manager");
    const Server centreServer("centre");
    manager = &managerServer;
    centre = &centreServer;
    return runBenchmarks(argc, argv) ? 0 : 1;
}

#include "bench_notifications.moc"
