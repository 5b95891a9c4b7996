#include "desktopfiles.h"
#include "table.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QMap>
#include <QProcess>

// The list of all applications, beside the Qt objects that it is made of and beside GIO's list. Each
// measurement is a process of its own, so that none finds the memory, the caches or the inotify
// instances of another.
namespace {

const DesktopFiles &applications(int count)
{
    static QMap<int, const DesktopFiles *> made;
    if (!made.contains(count))
        made.insert(count, new DesktopFiles(count));
    made[count]->use();
    return *made[count];
}

void list(benchmark::State &state, const QString &how)
{
    const int count = static_cast<int>(state.range(0));
    applications(count);
    double bytes = 0;
    double descriptors = 0;
    for (auto _ : state) {
        QProcess process;
        process.start(QStringLiteral(MEASURE_APPLICATIONS), { how });
        process.waitForFinished(-1);
        const QList<QByteArray> figures = process.readAllStandardOutput().trimmed().split(' ');
        if (figures.size() != 3) {
            state.SkipWithError("no figures");
            return;
        }
        state.SetIterationTime(figures.at(0).toDouble() / 1e9);
        bytes = figures.at(1).toDouble();
        descriptors = figures.at(2).toDouble();
    }
    state.counters["bytes per entry"] = bytes / count;
    state.counters["descriptors per entry"] = descriptors / count;
}

void listApplications(benchmark::State &state)
{
    list(state, QStringLiteral("library"));
}

void listFloor(benchmark::State &state)
{
    list(state, QStringLiteral("floor"));
}

void listGio(benchmark::State &state)
{
    list(state, QStringLiteral("gio"));
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(100)->Arg(1000)->Arg(5000)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark->Iterations(1)->Repetitions(9);
}

BENCHMARK(listApplications)->Name("ApplicationList")->Apply(sizes);
BENCHMARK(listFloor)->Name("ApplicationList_baseline_floor")->Apply(sizes);
BENCHMARK(listGio)->Name("ApplicationList_baseline_gio")->Apply(sizes);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv) ? 0 : 1;
}
