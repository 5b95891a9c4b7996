#include <quorvane/statusnotifier/statusnotifierhost.h>

#include "table.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QProcess>

// The tray over a session bus: the watcher and an item in processes of their own, the host here.
// A baseline is the bare bus traffic of the same kind, between the same processes.
namespace {

using Host = xdg::StatusNotifierHost;

class Peer : public QProcess
{
public:
    explicit Peer(const QString &role)
    {
        setStandardErrorFile(nullDevice());
        start(QStringLiteral(TRAYPROCESS), { role });
        waitForReadyRead();
    }
    ~Peer() override
    {
        kill();
        waitForFinished();
    }
};

struct Tray
{
    Tray() { waitForRows(1); }

    void waitForRows(int rows) const
    {
        while (host.rowCount() != rows)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    Peer watcher { QStringLiteral("watcher") };
    Peer item { QStringLiteral("item") };
    Host host;
};

const Tray &tray()
{
    static const Tray tray;
    return tray;
}

QDBusMessage callToWatcher(const char *interface, const char *method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.kde.StatusNotifierWatcher"),
                                          QStringLiteral("/StatusNotifierWatcher"),
                                          QString::fromLatin1(interface),
                                          QString::fromLatin1(method));
}

void HostData(benchmark::State &state)
{
    const Host &host = tray().host;
    for (auto _ : state)
        benchmark::DoNotOptimize(host.data(host.index(0), Host::TitleRole));
}

void HostData_baseline(benchmark::State &state)
{
    const QString service
            = QStringLiteral("org.quorvane.trayprocess-%1").arg(tray().item.processId());
    QDBusMessage get = QDBusMessage::createMethodCall(
            service, QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << QStringLiteral("org.kde.StatusNotifierItem") << QStringLiteral("Title");
    for (auto _ : state) {
        const QDBusMessage reply = QDBusConnection::sessionBus().call(get);
        if (reply.type() != QDBusMessage::ReplyMessage)
            state.SkipWithError("no value");
    }
}

// Registers items one after another, and measures until the watcher has answered the last call or,
// with untilShown, until the host's model shows them all.
void registerItems(benchmark::State &state, bool untilShown)
{
    QDBusConnection items
            = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("items"));
    QStringList names;
    for (int i = 0; i < state.range(0); ++i)
        names += QStringLiteral("org.quorvane.bench.item%1").arg(i);
    for (auto _ : state) {
        for (const QString &name : qAsConst(names))
            items.registerService(name);
        QElapsedTimer clock;
        clock.start();
        for (const QString &name : qAsConst(names)) {
            items.call(callToWatcher("org.kde.StatusNotifierWatcher", "RegisterStatusNotifierItem")
                       << name);
        }
        if (untilShown)
            tray().waitForRows(1 + names.size());
        state.SetIterationTime(double(clock.nsecsElapsed()) / 1e9);

        tray().waitForRows(1 + names.size());
        for (const QString &name : qAsConst(names))
            items.unregisterService(name);
        tray().waitForRows(1);
    }
}

void RegisterItems(benchmark::State &state)
{
    tray();
    registerItems(state, false);
}

void RegisterAndShowItems(benchmark::State &state)
{
    tray();
    registerItems(state, true);
}

// As many calls that do nothing.
void callWatcher(benchmark::State &state)
{
    tray();
    const QDBusMessage ping = callToWatcher("org.freedesktop.DBus.Peer", "Ping");
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < state.range(0); ++i)
            QDBusConnection::sessionBus().call(ping);
        state.SetIterationTime(double(clock.nsecsElapsed()) / 1e9);
    }
}

void fiveHundredItems(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(500)->Iterations(1)->UseManualTime()->Repetitions(3);
}

BENCHMARK(HostData)->UseRealTime()->MinTime(0.1)->Repetitions(21);
BENCHMARK(HostData_baseline)->UseRealTime()->MinTime(0.1)->Repetitions(21);
BENCHMARK(RegisterItems)->Apply(fiveHundredItems);
BENCHMARK(callWatcher)->Name("RegisterItems_baseline")->Apply(fiveHundredItems);
BENCHMARK(RegisterAndShowItems)->Apply(fiveHundredItems);
BENCHMARK(callWatcher)->Name("RegisterAndShowItems_baseline")->Apply(fiveHundredItems);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv) ? 0 : 1;
}
