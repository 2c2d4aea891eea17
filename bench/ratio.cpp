#include "ratio.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include <benchmark/benchmark.h>

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

bool IsTime(const Ratio& ratio)
{
    return ratio.reference.empty() || ratio.bound == Bound::AtMostAbove;
}

double Value(const BestTimes& times, const Ratio& ratio)
{
    const double subject = times.Of(ratio.subject);
    const double reference = ratio.reference.empty() ? 0 : times.Of(ratio.reference);
    if (IsTime(ratio))
        return (subject - reference) / 1000;
    return ratio.bound == Bound::AtMost ? subject / reference : reference / subject;
}

} // namespace

int RunBenchmarks(int argc, char** argv, const std::vector<Ratio>& ratios)
{
    benchmark::Initialize(&argc, argv);
    BestTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    bool isGood = true;
    std::puts("");
    for (const Ratio& ratio : ratios) {
        if (times.Of(ratio.subject) <= 0)
            continue;
        const double value = Value(times, ratio);
        const bool holds = ratio.bound == Bound::AtLeast ? value >= ratio.limit : value <= ratio.limit;
        std::printf("%-58s %8.3f%s  (%s %g)  %s\n", ratio.what.c_str(), value, IsTime(ratio) ? " us" : "   ",
                    ratio.bound == Bound::AtLeast ? "at least" : "at most", ratio.limit, holds ? "ok" : "MISSED");
        isGood = isGood && holds;
    }
    return isGood ? 0 : 1;
}

} // namespace bench
