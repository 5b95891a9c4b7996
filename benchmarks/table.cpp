#include "table.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

struct Row
{
    std::string benchmark;
    std::string measure;
    double value;
};

const std::string baselineMark = "_baseline";

std::string withBaseline(const std::string &benchmark, const std::string &mark)
{
    const auto slash = benchmark.find('/');
    return slash == std::string::npos ? benchmark + mark
                                      : benchmark.substr(0, slash) + mark + benchmark.substr(slash);
}

class TableReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            const bool single = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
            if (!single && run.aggregate_name != "median" && !run.error_occurred)
                continue;
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(),
                             run.error_message.c_str());
                _failed = true;
                continue;
            }
            _add(run);
        }
    }

    void Finalize() override
    {
        std::stable_sort(_rows.begin(), _rows.end(), [](const Row &one, const Row &other) {
            return std::make_pair(one.benchmark.size(), one.benchmark)
                   < std::make_pair(other.benchmark.size(), other.benchmark);
        });
        std::printf("%-52s %-22s %14s  %s\n", "benchmark (median)", "measure", "value", "ratio");
        for (const Row &row : _rows) {
            std::printf("%-52s %-22s %14.2f  %s\n", row.benchmark.c_str(), row.measure.c_str(),
                        row.value, _ratios(row).c_str());
        }
    }

    bool failed() const { return _failed; }

private:
    void _add(const Run &run)
    {
        benchmark::BenchmarkName name = run.run_name;
        name.repetitions.clear();
        name.iterations.clear();
        name.time_type.clear();
        name.min_time.clear();
        _put({ name.str(), std::string("time, ") + benchmark::GetTimeUnitString(run.time_unit),
               run.GetAdjustedRealTime() });
        for (const auto &counter : run.counters)
            _put({ name.str(), counter.first, counter.second.value });
    }

    void _put(const Row &row)
    {
        _rows.push_back(row);
        _values[{ row.benchmark, row.measure }] = row.value;
    }

    std::string _ratios(const Row &row) const
    {
        std::string text;
        for (const std::string label : { "", "_floor", "_gio" }) {
            const auto baseline = _values.find(
                    { withBaseline(row.benchmark, baselineMark + label), row.measure });
            if (baseline == _values.end() || baseline->second == 0)
                continue;
            char ratio[64];
            std::snprintf(ratio, sizeof ratio, "%s%.2f%s%s", text.empty() ? "" : ", ",
                          row.value / baseline->second, label.empty() ? "" : " of ",
                          label.empty() ? "" : label.c_str() + 1);
            text += ratio;
        }
        return text;
    }

    std::vector<Row> _rows;
    std::map<std::pair<std::string, std::string>, double> _values;
    bool _failed = false;
};

} // namespace

bool runBenchmarks(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return !reporter.failed();
}
