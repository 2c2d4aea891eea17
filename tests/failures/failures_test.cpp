// Every failure, one after the other: each call of the stand-in and each allocation of a whole session fails in its
// turn. A case that goes wrong is run alone, with its log, by its name: PHN_WALK_LOG=1 PHN_WALK_ONLY="CreateEventA
// error 8 behind 17 once" failures_test
#include <gtest/gtest.h>

#include <cstdio>
#include <numeric>

#include "failures/call_errors.h"
#include "failures/walk.h"

namespace {

void ExpectRight(const char* what, unsigned places, const std::vector<Fault>& faults)
{
    const WalkResult result = Walk(faults);
    std::printf("walked %u %s: %zu runs, in %u of which the failure came about, %zu wrong, %.0f s\n", places, what,
                result.runs, result.struck, result.wrong.size(), result.seconds);
    for (const std::string& wrong : result.wrong)
        ADD_FAILURE() << wrong;
}

void ExpectCallsRight(unsigned count)
{
    const std::vector<unsigned> calls = TakeCensus().calls;
    std::vector<Fault> faults;
    for (size_t call = 0; call < calls.size(); ++call) {
        const CallErrors& one = AllCallErrors()[call];
        for (const DWORD error : one.errors) {
            for (unsigned skip = 0; skip < calls[call]; ++skip)
                faults.push_back({one.call, error, skip, count});
        }
    }
    ExpectRight("calls", std::accumulate(calls.begin(), calls.end(), 0u), faults);
}

TEST(FailuresTest, EachCallFailsOnce)
{
    ExpectCallsRight(1);
}

TEST(FailuresTest, EachCallFailsFromThenOn)
{
    ExpectCallsRight(kForEver);
}

TEST(FailuresTest, EachAllocationFails)
{
    const unsigned allocations = TakeCensus().allocations;
    std::vector<Fault> faults;
    for (const unsigned count : {1u, kForEver}) {
        for (unsigned skip = 0; skip < allocations; ++skip)
            faults.push_back({"", 0, skip, count});
    }
    ExpectRight("allocations", allocations, faults);
}

} // namespace
