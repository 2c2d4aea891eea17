// Every failure, one after the other: each call of the stand-in and each allocation of a session fails in its turn, and
// then pairs of failures. A case that goes wrong is run alone, with its log, by its name:
// PHN_WALK_LOG=1 PHN_WALK_ONLY="CreateEventA error 8 behind 17 once" failures_test
#include <gtest/gtest.h>

#include <cstdio>
#include <numeric>
#include <set>

#include "failures/call_errors.h"
#include "failures/walk.h"

namespace {

void ExpectRight(const WalkResult& result, const std::string& walked)
{
    std::printf("walked %s: %zu runs, in %u of which a failure came about, %u made again, %zu wrong, %.0f s\n",
                walked.c_str(), result.runs, result.struck, result.again, result.wrong.size(), result.seconds);
    EXPECT_GE(result.struck, result.runs * 9 / 10) << "a walk that strikes nothing shows nothing";
    for (const std::string& wrong : result.wrong)
        ADD_FAILURE() << wrong;
}

// With each error of the call, or with as many as are wanted.
void AddCalls(const Census& census, unsigned count, std::vector<Case>& cases, size_t errors)
{
    for (size_t call = 0; call < census.calls.size(); ++call) {
        const CallErrors& one = kCallErrors[call];
        for (size_t error = 0; error < std::min(errors, one.errors.size()); ++error) {
            for (unsigned skip = 0; skip < census.calls[call]; ++skip)
                cases.push_back({{{one.call, one.errors[error], skip, count}}});
        }
    }
}

void ExpectSessionRight(Attachment attachment, std::initializer_list<unsigned> counts, size_t errors)
{
    const Census census = TakeCensus(attachment);
    // Made when an exchange fails, and where a handset is on a serial port.
    const std::set<std::string> elsewhere{"CancelIoEx", "RegEnumValueA"};
    for (size_t call = 0; attachment == Attachment::Usb && call < kCallErrors.size(); ++call)
        EXPECT_NE(census.calls[call] > 0, elsewhere.contains(kCallErrors[call].call)) << kCallErrors[call].call;
    std::vector<Case> cases;
    for (const unsigned count : counts) {
        AddCalls(census, count, cases, errors);
        for (unsigned skip = 0; skip < census.allocations; ++skip)
            cases.push_back({{{"", 0, skip, count}}});
    }
    const unsigned calls = std::accumulate(census.calls.begin(), census.calls.end(), 0u);
    ExpectRight(Walk(cases, attachment),
                std::to_string(calls) + " calls and " + std::to_string(census.allocations) + " allocations");
}

TEST(FailuresTest, WhatFailsOnce)
{
    ExpectSessionRight(Attachment::Usb, {1}, SIZE_MAX);
}

TEST(FailuresTest, WhatFailsFromThenOn)
{
    ExpectSessionRight(Attachment::Usb, {kForEver}, SIZE_MAX);
}

TEST(FailuresTest, OnASerialPort)
{
    ExpectSessionRight(Attachment::Serial, {1, kForEver}, 1);
}

// clang-format off
// What an exchange fails by, and what its clean-up or its log line fails by in the same call.
TEST(FailuresTest, PairsOfFailuresInAnExchange)
{
    const Case exchange[] = {
        {{{"CreateEventA", ERROR_NOT_ENOUGH_MEMORY}}}, {{{"ReadFile", ERROR_GEN_FAILURE}}},
        {{{"ReadFile", ERROR_OPERATION_ABORTED}}},
        {{{"WriteFile", ERROR_GEN_FAILURE, 0, kForEver}}}, // the log's as well
        {{{"WaitForMultipleObjects", ERROR_NOT_ENOUGH_MEMORY, 0, kForEver}}},
        {{{"GetOverlappedResult", ERROR_GEN_FAILURE, 0, kForEver}}}, {{}, {}, "silence"}, {{}, {}, "hangup"},
        {{}, {}, "unplug"}, {{}, {}, "truncate=9"}, {{}, {}, "check"},
    };
    const Fault cleanUp[] = {
        {"ClearCommError", ERROR_BAD_COMMAND, 0, kForEver}, {"PurgeComm", ERROR_BAD_COMMAND, 0, kForEver},
        {"CancelIoEx", ERROR_BAD_COMMAND, 0, kForEver}, {"GetOverlappedResult", ERROR_OPERATION_ABORTED, 0, kForEver},
        {"RegQueryValueExA", ERROR_NOT_ENOUGH_MEMORY, 0, kForEver}, {"", 0, 0, kForEver},
    };
    TakeCensus();
    std::vector<Case> cases;
    for (const char* const subject : {"PHN_GetBatteryInfo", "PHN_GetContact", "PHN_SetContact", "PHN_SetEvent",
                                      "PHN_SendMessage", "PHN_GetFirstMessage"}) {
        for (const Case& first : exchange) {
            for (const Fault& second : cleanUp) {
                cases.push_back(first);
                cases.back().subject = subject;
                cases.back().faults.push_back(second);
            }
        }
    }
    ExpectRight(Walk(cases), "six exports");
}

} // namespace
