#include "failures/judge.h"

#include <cstring>
#include <map>
#include <set>

#include "phnnrv.h"

namespace {

// A wait for the handset and two exchanges whose writing and three reads take all of their time.
constexpr std::chrono::milliseconds kLongestCall((15'000 + 2 * 4 * 15'000) / kTimeDivisor);

size_t Hash(const Outcome& outcome)
{
    return std::hash<std::string>()(outcome.output);
}

std::string ToString(const Outcome& outcome)
{
    return outcome.name + " = " + std::to_string(outcome.code);
}

void JudgeOutput(const Outcome& outcome, const ExpectedOutputs& expected, Complaints& wrong)
{
    const auto isOf = [&](const auto& one) { return outcome.name == one.name; };
    if (outcome.HasSucceeded() && outcome.code != PHN_ERROR_NO_DEVICE &&
        std::ranges::find_if(expected.exports, isOf)->hash != Hash(outcome))
        wrong.push_back(outcome.name + " succeeds with another output");
}

bool IsDocumented(const Outcome& outcome, const Case& one)
{
    if (outcome.name.ends_with("Count"))
        return outcome.code == 0;
    std::set<uint32_t> codes = {PHN_ERROR_NO_DEVICE, PHN_ERROR_FAILED, PHN_ERROR_NO_SERVICE_OBJECT};
    if (outcome.name == "PHN_Startup")
        codes.insert({PHN_ERROR_COMMUNICATION, PHN_ERROR_NOT_SUPPORTED});
    if (outcome.name == "PHN_GetNextMessage") // the first was not read
        codes.insert(PHN_ERROR_NO_MORE_MESSAGES);
    if (outcome.name == "PHN_GetNextCallEntry")
        codes.insert(PHN_ERROR_NO_MORE_ENTRIES);
    const auto isOfTime = [](const Fault& fault) { return fault.call.find("TzSpecific") != std::string::npos; };
    if (outcome.name == "PHN_SetEvent" && std::ranges::any_of(one.faults, isOfTime))
        codes.insert(PHN_ERROR_INVALID_PARAMETER); // a time that cannot be converted is rejected
    return codes.contains(outcome.code);
}

// Does logging need what fails? A line needs no memory, opening the log does.
bool StrikesLog(const Fault& fault)
{
    constexpr std::string_view kCalls[] = {"CreateFileA",   "GetModuleFileNameA", "GetModuleHandleA",
                                           "RegOpenKeyExA", "RegQueryValueExA",   "WriteFile"};
    return (fault.call.empty() && fault.count == kForEver) || std::ranges::find(kCalls, fault.call) != std::end(kCalls);
}

size_t CountLines(const std::string& log, const std::string& text)
{
    size_t count = 0;
    for (size_t at = 0; (at = log.find(text, at)) != std::string::npos; at += text.size())
        ++count;
    return count;
}

// Each call that has failed has left a line; where the log was struck once, one may be missing.
void JudgeLog(const SessionReport& report, const Case& one, Complaints& wrong)
{
    const auto isForEver = [](const Fault& fault) { return StrikesLog(fault) && fault.count == kForEver; };
    if (std::ranges::any_of(one.faults, isForEver))
        return;
    std::map<std::string, size_t> failures;
    for (const Outcome& outcome : report.outcomes) {
        if (!outcome.HasSucceeded())
            ++failures[outcome.name];
    }
    size_t missing = 0;
    std::string names;
    for (const auto& [name, count] : failures) {
        const size_t lines = CountLines(report.log, "\tError\t" + name + " - ");
        missing += count - std::min(lines, count);
        if (lines < count)
            names += ' ' + name;
    }
    if (missing > static_cast<size_t>(std::ranges::count_if(one.faults, StrikesLog)))
        wrong.push_back(std::to_string(missing) + " Error lines are missing:" + names);
}

// What has failed once, and is over, leaves no library that never serves a handset again.
void JudgeService(const SessionReport& report, const Case& one, Complaints& wrong)
{
    if (std::ranges::any_of(one.faults, [](const Fault& fault) { return fault.count == kForEver; }))
        return;
    for (const char* const name : {"PHN_Startup", "PHN_GetBatteryInfo"}) {
        const auto last = std::ranges::find(report.outcomes.rbegin(), report.outcomes.rend(), name, &Outcome::name);
        if (last != report.outcomes.rend() && last->success == PHN_ERROR_NONE && !last->HasSucceeded())
            wrong.push_back("in the end " + ToString(*last));
    }
}

} // namespace

void ExpectedOutputs::Note(const SessionReport& report)
{
    size_t next = 0;
    for (const Outcome& outcome : report.outcomes) {
        std::strncpy(exports[next].name, outcome.name.c_str(), sizeof exports[next].name - 1);
        exports[next++].hash = Hash(outcome);
    }
}

Complaints JudgeClean(const SessionReport& report, const ExpectedOutputs& expected)
{
    Complaints wrong;
    if (!report.isLoaded || !report.isUnloaded)
        wrong.push_back("the library is not loaded, or not unloaded");
    for (const Outcome& outcome : report.outcomes) {
        if (!outcome.HasSucceeded())
            wrong.push_back(ToString(outcome));
        JudgeOutput(outcome, expected, wrong);
    }
    if (report.isLoaded && !(report.wasChangeTold && report.wasRemovalTold))
        wrong.push_back("the host is not told what it should be");
    return wrong;
}

Complaints JudgeFaulty(const SessionReport& report, const ExpectedOutputs& expected, const Case& one)
{
    Complaints wrong;
    for (const Outcome& outcome : report.outcomes) {
        if (!outcome.HasSucceeded() && !IsDocumented(outcome, one))
            wrong.push_back(ToString(outcome) + " is not what this failure gives");
        if (outcome.time > kLongestCall)
            wrong.push_back(ToString(outcome) + " after " + std::to_string(outcome.time.count()) + " ms");
        if (outcome.heldLocks != 0)
            wrong.push_back(ToString(outcome) + " and holds a lock");
        JudgeOutput(outcome, expected, wrong);
    }
    if (report.isLoaded && !report.isUnloaded)
        wrong.push_back("the library is not unloaded");
    JudgeLog(report, one, wrong);
    if (one.subject.empty())
        JudgeService(report, one, wrong);
    return wrong;
}
