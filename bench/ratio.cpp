#include "ratio.h"

#include <sched.h>

#include <algorithm>
#include <cstdio>
#include <map>

#include <benchmark/benchmark.h>

#include "figure.h"

namespace bench {
namespace {

// Shows the usual table and keeps the best time of each benchmark, in nanoseconds.
class BestTimes : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            const auto iterations = static_cast<double>(std::max<int64_t>(run.iterations, 1));
            const double seconds =
                run.run_name.time_type.empty() ? run.cpu_accumulated_time : run.real_accumulated_time;
            auto [entry, isNew] = best_.try_emplace(run.run_name.function_name, 1e300);
            entry->second = std::min(entry->second, 1e9 * seconds / iterations);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    double Of(const std::string& name) const
    {
        const auto entry = best_.find(name);
        return entry == best_.end() ? 0 : entry->second;
    }

private:
    std::map<std::string, double> best_;
};

Figure FigureOf(const BestTimes& times, const Ratio& ratio)
{
    const double subject = times.Of(ratio.subject) / 1000;
    const double reference = ratio.reference.empty() ? 0 : times.Of(ratio.reference) / 1000;
    Figure figure{.what = ratio.what,
                  .value = subject - reference,
                  .unit = "us",
                  .limit = ratio.limit,
                  .subject = ratio.subject,
                  .subjectTime = subject,
                  .reference = ratio.reference,
                  .referenceTime = reference};
    if (ratio.reference.empty() || ratio.bound == Bound::AtMostAbove)
        return figure;
    figure.unit.clear();
    figure.isLeast = ratio.bound == Bound::AtLeast;
    figure.value = figure.isLeast ? reference / subject : subject / reference;
    return figure;
}

} // namespace

void StayOnOneProcessor()
{
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(sched_getcpu(), &processors);
    sched_setaffinity(0, sizeof processors, &processors);
}

int RunBenchmarks(int argc, char** argv, const std::vector<Ratio>& ratios)
{
    benchmark::Initialize(&argc, argv);
    BestTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    bool isGood = true;
    std::puts("");
    for (const Ratio& ratio : ratios)
        if (times.Of(ratio.subject) > 0)
            isGood = Judge(FigureOf(times, ratio)) && isGood;
    return isGood ? 0 : 1;
}

} // namespace bench
