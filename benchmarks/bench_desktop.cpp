#include <quorvane/desktop/desktopentries.h>

#include "table.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileSystemWatcher>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>

namespace {

// A file as applications install them: 40 languages, 4 KB.
QByteArray desktopFile(int number)
{
    const QByteArray name = "Application " + QByteArray::number(number);
    QByteArray text = "[Desktop Entry]\nType=Application\nVersion=1.0\nName=" + name + '\n';
    for (int language = 0; language < 40; ++language) {
        const QByteArray locale { 1, static_cast<char>('a' + language % 26) };
        text += "Name[" + locale + static_cast<char>('a' + language / 26) + "]=" + name
                + " in the words that its translators found for it, language "
                + QByteArray::number(language) + '\n';
    }
    text += "Exec=/bin/true %U\nIcon=application-" + QByteArray::number(number)
            + "\nTerminal=false\nNoDisplay=false\nCategories=Utility\nKeywords=one two three\n";
    text += "Comment=" + QByteArray(qMax(0, 4096 - text.size() - 9), 'c') + '\n';
    return text;
}

QString fileName(int number)
{
    return QStringLiteral("org.example.application%1.desktop").arg(number, 5, 10, QLatin1Char('0'));
}

// A data home with a number of applications, and no other data directory.
class Applications
{
public:
    explicit Applications(int count)
    {
        QDir(_root.path()).mkpath(QStringLiteral("home/applications"));
        qputenv("XDG_DATA_HOME", QFile::encodeName(_root.filePath(QStringLiteral("home"))));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(_root.filePath(QStringLiteral("none"))));
        for (int i = 0; i < count; ++i)
            write(i);
    }

    QString directory() const { return _root.filePath(QStringLiteral("home/applications")); }

    QString write(int number) const
    {
        QFile file(directory() + QLatin1Char('/') + fileName(number));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("Can't write %s", qPrintable(file.fileName()));
        file.write(desktopFile(number));
        return file.fileName();
    }

private:
    QTemporaryDir _root;
};

const Applications &applications(int count)
{
    static QMap<int, const Applications *> made;
    if (!made.contains(count))
        made.insert(count, new Applications(count));
    qputenv("XDG_DATA_HOME", QFile::encodeName(QFileInfo(made[count]->directory()).path()));
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

// From the moment when a watcher of the directory reports the change to the announced row.
void addOneFile(benchmark::State &state)
{
    const Applications made(static_cast<int>(state.range(0)));
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
    const Applications made(static_cast<int>(state.range(0)));
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

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(100)->Arg(1000)->Arg(5000)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark->Iterations(1)->Repetitions(9);
}

void thousand(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark->Iterations(5)->Repetitions(5);
}

BENCHMARK(listApplications)->Name("ApplicationList")->Apply(sizes);
BENCHMARK(listFloor)->Name("ApplicationList_baseline_floor")->Apply(sizes);
BENCHMARK(listGio)->Name("ApplicationList_baseline_gio")->Apply(sizes);
BENCHMARK(addOneFile)->Name("FileAdded")->Apply(thousand);
BENCHMARK(addOneFileFloor)->Name("FileAdded_baseline")->Apply(thousand);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv) ? 0 : 1;
}
