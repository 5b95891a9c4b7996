// What a posting program waits for, against a bare Qt adaptor in the same process that answers with
// a number, and how many posts a second the service takes from a program that does not wait.
//
// The service is a second process: this program, started with --serve. It needs a session bus on
// which nobody owns the name of the notification service. On several CPUs a round trip takes one of
// two times, as the scheduler places the three processes; on one, bus included, it is steady.

#include <quorvane/notifications/notificationmanager.h>

#include "table.h"

#include <benchmark/benchmark.h>

#include <QtDBus>

#include <chrono>

namespace {

const char service[] = "org.freedesktop.Notifications";
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

int serve()
{
    xdg::NotificationManager manager;
    QObject bare;
    new BareAdaptor(&bare);
    QDBusConnection::sessionBus().registerObject(barePath, &bare, QDBusConnection::ExportAdaptors);
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

QDBusMessage call(const QString &object, const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, object, service, method);
    message.setArguments(arguments);
    return message;
}

// A usual notification: two actions, two hints.
QDBusMessage post(const char *object)
{
    return call(object, "Notify",
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

void close(const char *object, uint id)
{
    QDBusConnection::sessionBus().call(call(object, "CloseNotification", { id }));
}

// Fills or empties the service until the given number is pending.
void setPending(int number)
{
    QDBusMessage list = QDBusMessage::createMethodCall(
            "com.zovar.NotificationManager", "/com/zovar/NotificationManager",
            "com.zovar.NotificationManager", "listPending");
    const auto bus = QDBusConnection::sessionBus();
    const QList<uint> pending = QDBusReply<QList<uint>>(bus.call(list)).value();
    for (int i = pending.size(); i < number; ++i)
        bus.send(post(path));
    for (const uint id : pending.mid(number))
        bus.send(call(path, "CloseNotification", { id }));
    bus.call(list);
}

// Only the post is timed. What it added is closed again, so that the number pending stays.
void roundTrip(benchmark::State &state, const char *object)
{
    setPending(int(state.range(0)));
    const QDBusMessage message = post(object);
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        const uint id = answer(message);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(elapsed.count());
        if (id == 0)
            state.SkipWithError("no answer");
        close(object, id);
    }
}

// A burst that does not wait, until the service has taken the last one.
void burst(benchmark::State &state, const char *object)
{
    const int number = int(state.range(0));
    const auto bus = QDBusConnection::sessionBus();
    const QDBusMessage message = post(object);
    for (auto _ : state) {
        setPending(0);
        const auto start = std::chrono::steady_clock::now();
        for (int i = 1; i < number; ++i)
            bus.send(message);
        answer(message);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(elapsed.count());
    }
    state.SetItemsProcessed(state.iterations() * number);
}

void Notify(benchmark::State &state)
{
    roundTrip(state, path);
}

void Notify_baseline(benchmark::State &state)
{
    roundTrip(state, barePath);
}

void NotifyWithoutWaiting(benchmark::State &state)
{
    burst(state, path);
}

void NotifyWithoutWaiting_baseline(benchmark::State &state)
{
    burst(state, barePath);
}

void usual(benchmark::internal::Benchmark *benchmark)
{
    benchmark->UseManualTime()->Unit(benchmark::kMicrosecond)->Repetitions(9);
}

BENCHMARK(Notify)->Arg(0)->Arg(10000)->Apply(usual);
BENCHMARK(Notify_baseline)->Arg(0)->Arg(10000)->Apply(usual);
BENCHMARK(NotifyWithoutWaiting)->Arg(5000)->Apply(usual);
BENCHMARK(NotifyWithoutWaiting_baseline)->Arg(5000)->Apply(usual);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (QCoreApplication::arguments().value(1) == QLatin1String("--serve"))
        return serve();

    QProcess server;
    server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    server.start(QCoreApplication::applicationFilePath(), { "--serve" });
    if (!server.waitForReadyRead())
        return 1;
    const bool done = runBenchmarks(argc, argv);
    server.closeWriteChannel();
    return server.waitForFinished() && done ? 0 : 1;
}

#include "bench_notifications.moc"
