#include "desktopfiles.h"
#include "table.h"

#include <quorvaneshell/applications/applications.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>

#include <cstring>
#include <ctime>
#include <gio/gdesktopappinfo.h>
#include <memory>

using namespace quorvane;

// The list of applications for a launcher, beside GIO's own with the same values, and the time that a
// key stroke in its search takes.
namespace {

constexpr int count = 1000;

int inotifyInstances()
{
    int instances = 0;
    const QFileInfoList files
            = QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::AllEntries | QDir::System);
    for (const QFileInfo &file : files)
        instances += file.symLinkTarget().endsWith(QLatin1String("inotify")) ? 1 : 0;
    return instances;
}

void list(benchmark::State &state)
{
    for (auto _ : state) {
        const Applications model;
        for (int row = 0; row < model.rowCount(); ++row) {
            for (int role = Applications::AppIdRole; role <= Applications::PathRole; ++role)
                benchmark::DoNotOptimize(model.data(model.index(row), role));
        }
        if (model.count() != count)
            state.SkipWithError("not all applications");
        state.counters["inotify instances"] = inotifyInstances();
    }
}

size_t length(const char *text)
{
    return text ? std::strlen(text) : 0;
}

size_t length(const char *const *texts)
{
    size_t sum = 0;
    for (; texts && *texts; ++texts)
        sum += length(*texts);
    return sum;
}

size_t readValues(GDesktopAppInfo *entry)
{
    auto *info = G_APP_INFO(entry);
    g_autofree gchar *icon = g_icon_to_string(g_app_info_get_icon(info));
    size_t sum = length(g_app_info_get_id(info)) + length(g_app_info_get_name(info))
                 + length(g_desktop_app_info_get_generic_name(entry))
                 + length(g_app_info_get_description(info))
                 + length(g_desktop_app_info_get_keywords(entry))
                 + length(g_desktop_app_info_get_categories(entry)) + length(icon)
                 + length(g_desktop_app_info_get_filename(entry));
    for (auto *action = g_desktop_app_info_list_actions(entry); *action; ++action) {
        g_autofree gchar *name = g_desktop_app_info_get_action_name(entry, *action);
        sum += length(*action) + length(name);
    }
    return sum + g_desktop_app_info_get_boolean(entry, G_KEY_FILE_DESKTOP_KEY_TERMINAL)
           + g_app_info_should_show(info);
}

void listGio(benchmark::State &state)
{
    for (auto _ : state) {
        GList *all = g_app_info_get_all();
        for (const GList *item = all; item; item = item->next)
            benchmark::DoNotOptimize(readValues(G_DESKTOP_APP_INFO(item->data)));
        g_list_free_full(all, g_object_unref);
    }
}

// What other processes do meanwhile is not in it.
double ownMilliseconds()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// Typed letter by letter and taken back, with the longest of all strokes.
void typeSearch(benchmark::State &state)
{
    Applications model;
    const QString typed = QStringLiteral("application 77");
    int length = 0;
    double longest = 0;
    for (auto _ : state) {
        const double start = ownMilliseconds();
        model.setSearch(typed.left(++length % (typed.size() + 1)));
        longest = qMax(longest, ownMilliseconds() - start);
    }
    state.counters["longest, CPU ms"] = longest;
}

// For a class that is an id, and for one that says nothing, so that all that there is has to be asked.
void identify(benchmark::State &state, const char *windowClass)
{
    const Applications model;
    const QString known = QString::fromLatin1(windowClass);
    const qint64 pid = QCoreApplication::applicationPid();
    model.identify({});
    for (auto _ : state)
        benchmark::DoNotOptimize(model.identify(known, pid));
}

// The first question after a change of the applications.
void identifyFirst(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto model = std::make_unique<const Applications>();
        state.ResumeTiming();
        benchmark::DoNotOptimize(model->identify(QStringLiteral("unknown")));
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
}

BENCHMARK(list)->Name("Applications/1000")->Unit(benchmark::kMillisecond)->Repetitions(9);
BENCHMARK(listGio)->Name("Applications_baseline/1000")->Unit(benchmark::kMillisecond)->Repetitions(9);
BENCHMARK(typeSearch)->Name("KeyStroke/1000")->Unit(benchmark::kMillisecond)->Iterations(1500);
BENCHMARK_CAPTURE(identify, id, "org.example.application00077")
        ->Name("Identify_id/1000")
        ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(identify, unknown, "unknown")
        ->Name("Identify_unknown/1000")
        ->Unit(benchmark::kMicrosecond);
BENCHMARK(identifyFirst)->Name("Identify_first/1000")->Unit(benchmark::kMicrosecond)->Iterations(20);

} // namespace

int main(int argc, char *argv[])
{
    // GIO reads the directories from the environment once.
    const DesktopFiles files(count);
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv) ? 0 : 1;
}
