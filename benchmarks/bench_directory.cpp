#include <quorvane/desktop/desktopentries.h>

#include "desktopfiles.h"
#include "table.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileSystemWatcher>
#include <QProcess>
#include <QSettings>

// A file that arrives in a directory of applications.
namespace {

// From the moment when a watcher of the directory reports the change to the announced row.
void addOneFile(benchmark::State &state)
{
    const DesktopFiles made(static_cast<int>(state.range(0)));
    QFileSystemWatcher watcher({ made.directory() });
    xdg::DesktopEntries model;
    int number = model.rowCount();
    QElapsedTimer timer;
    QEventLoop loop;
    qint64 nanoseconds = 0;
    QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, &loop, [&timer] {
        if (!timer.isValid())
            timer.start();
    });
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &loop, [&] {
        nanoseconds = timer.isValid() ? timer.nsecsElapsed() : 0;
        loop.quit();
    });
    for (auto _ : state) {
        timer.invalidate();
        made.write(number++);
        loop.exec();
        state.SetIterationTime(static_cast<double>(nanoseconds) / 1e9);
        QCoreApplication::processEvents();
    }
}

// The least that has to be done for it: the directory listed, one file read and watched.
void addOneFileFloor(benchmark::State &state)
{
    const DesktopFiles made(static_cast<int>(state.range(0)));
    int number = static_cast<int>(state.range(0));
    for (auto _ : state) {
        const QString path = made.write(number++);
        QElapsedTimer timer;
        timer.start();
        benchmark::DoNotOptimize(
                QDir(made.directory()).entryList({ QStringLiteral("*.desktop") }, QDir::Files));
        const QFileSystemWatcher watcher({ path });
        QProcess process;
        process.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
        const QSettings settings(path, QSettings::IniFormat);
        benchmark::DoNotOptimize(settings.value(QStringLiteral("Desktop Entry/Categories")));
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9);
    }
}

void thousand(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark->Iterations(25);
}

// In this order and once: the entries of a model are never deleted, and take all inotify instances.
BENCHMARK(addOneFileFloor)->Name("FileAdded_baseline")->Apply(thousand);
BENCHMARK(addOneFile)->Name("FileAdded")->Apply(thousand);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv) ? 0 : 1;
}
