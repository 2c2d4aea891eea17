#include "ratio.h"

#include <sched.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include "figure.h"

namespace bench {
namespace {

// Shows the usual table and keeps the median time of each benchmark's repetitions, in nanoseconds.
class MedianTimes : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            hasFailed_ |= run.error_occurred;
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            const auto iterations = static_cast<double>(std::max<int64_t>(run.iterations, 1));
            const double seconds =
                run.run_name.time_type.empty() ? run.cpu_accumulated_time : run.real_accumulated_time;
            times_[run.run_name.function_name].push_back(1e9 * seconds / iterations);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    bool HasFailed() const { return hasFailed_; }

    double Of(const std::string& name) const
    {
        const auto entry = times_.find(name);
        if (entry == times_.end())
            return 0;
        std::vector<double> sorted = entry->second;
        std::ranges::sort(sorted);
        return sorted[sorted.size() / 2];
    }

private:
    bool hasFailed_ = false;
    std::map<std::string, std::vector<double>> times_;
};

Figure FigureOf(const MedianTimes& times, const Ratio& ratio)
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

void RunOn(unsigned processor)
{
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(processor, &processors);
    sched_setaffinity(0, sizeof processors, &processors);
}

// By several threads: beside one alone, the system takes turns with which processor it finds the less busy. And each
// processor, however many there are: what carries a pseudo terminal's bytes is bound to none, and takes any idle one.
void KeepBusy(unsigned processor)
{
    constexpr int kThreads = 4;
    for (int thread = 0; thread < kThreads; ++thread)
        std::thread([processor] {
            RunOn(processor);
            for (std::atomic<bool> isBusy = true; isBusy;)
                ;
        }).detach();
}

} // namespace

void StayOnOneProcessor()
{
    cpu_set_t allowed;
    if (sched_getaffinity(0, sizeof allowed, &allowed) != 0)
        return;
    const auto own = static_cast<unsigned>(sched_getcpu());
    for (unsigned processor = 0; processor < CPU_SETSIZE; ++processor)
        if (processor != own && CPU_ISSET(processor, &allowed))
            KeepBusy(processor);
    RunOn(own);
}

int RunBenchmarks(int argc, char** argv, const std::vector<Ratio>& ratios, Order order)
{
    std::string mixed =
        std::string("--benchmark_enable_random_interleaving=") + (order == Order::Mixed ? "true" : "false");
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, mixed.data()); // behind it, the user's own word counts
    arguments.push_back(nullptr);
    int count = argc + 1;
    benchmark::Initialize(&count, arguments.data());
    MedianTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    bool isGood = true;
    std::puts("");
    for (const Ratio& ratio : ratios)
        if (times.Of(ratio.subject) > 0)
            isGood = Judge(FigureOf(times, ratio)) && isGood;
    return times.HasFailed() ? 2 : isGood ? 0 : 1;
}

} // namespace bench
