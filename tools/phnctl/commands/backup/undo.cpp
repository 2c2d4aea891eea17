// phnctl undo and resume: the last run that wrote, taken back or finished from its journal.
#include "phnctl/cli/print.h"
#include "phnctl/commands/backup/restoration.h"
#include "phnctl/commands/backup/sections.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/table.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <map>
#include <utility>

namespace phnctl {

namespace {

constexpr const char* kList = "--list";

// "12 contacts added, 1 contact deleted"
std::string WhatIsIn(const JournalRun& run)
{
    std::map<std::pair<std::string, const char*>, std::size_t> counts;
    for (const JournalStep& step : run.steps)
        if (step.isBegun)
            ++counts[{step.kind, !step.before ? "added" : !step.after ? "deleted" : "changed"}];
    std::vector<std::string> parts;
    for (const auto& section : Sections())
        for (const auto& [what, count] : counts)
            if (what.first == section->Name())
                parts.push_back(Counted(count, section->One(), section->Name()) + " " + what.second);
    return parts.empty() ? "nothing" : fmt::format("{}", fmt::join(parts, ", "));
}

const char* StateOf(const JournalRun& run)
{
    if (run.isSettled)
        return "settled";
    return run.IsWhole() ? "whole" : run.isOver ? "in part" : "cut off";
}

int List(const Invocation& invocation)
{
    const std::vector<JournalRun> runs = KeptRuns();
    JsonList list;
    std::vector<std::vector<std::string>> rows;
    for (const JournalRun& run : runs) {
        rows.push_back({run.name, WhatIsIn(run), StateOf(run), run.handset.model}); // its command is in the name
        list.push_back({JsonObject{{"run", {run.name}},
                                   {"command", {run.command}},
                                   {"what", {WhatIsIn(run)}},
                                   {"state", {std::string(StateOf(run))}},
                                   {"model", {run.handset.model}},
                                   {"serial", {run.handset.serial}},
                                   {"folder", {TextOf(RunsFolder() / run.name)}}}});
    }
    if (invocation.options.json)
        fmt::print("{}\n", WriteJson({JsonObject{{"runs", {std::move(list)}}}}));
    else if (runs.empty())
        fmt::print("No run has written anything yet.\n");
    else
        fmt::print("{}They are in {}.\n",
                   TableText({"RUN", "WHAT", "STATE", "MODEL"}, rows, host::TerminalWidth(stdout)),
                   Printable(TextOf(RunsFolder())));
    return kDone;
}

bool CanBeMeant(const JournalRun& run, Way way)
{
    if (run.isSettled || !run.takesBack.empty())
        return false;
    return way == Way::Back ? std::ranges::any_of(run.steps, &JournalStep::isBegun) : !run.IsWhole();
}

// The beginning of a name is enough where no other run begins so.
JournalRun NamedRun(const std::string& name, const std::vector<JournalRun>& runs)
{
    const auto begins = [&](const JournalRun& run) { return run.name.starts_with(name); };
    const auto exact = std::ranges::find(runs, name, &JournalRun::name);
    const auto found = exact != runs.end() ? exact : std::ranges::find_if(runs, begins);
    if (found == runs.end())
        throw Failure(kUsage, fmt::format("there is no run {}; 'phnctl undo --list' shows them", Printable(name)));
    if (found != exact && std::ranges::count_if(runs, begins) > 1)
        throw Failure(kUsage,
                      fmt::format("several runs begin with {}; 'phnctl undo --list' shows them", Printable(name)));
    return *found;
}

// The run that is named, or the last one that can be meant.
JournalRun RunOf(const Invocation& invocation, const std::vector<JournalRun>& runs, Way way)
{
    if (const auto name = invocation.Value("RUN"))
        return NamedRun(*name, runs);
    const auto found = std::ranges::find_if(runs, [&](const JournalRun& run) { return CanBeMeant(run, way); });
    if (found == runs.end())
        throw Failure(kUsage, way == Way::Back ? "there is no run to take back." : "no run was cut off.");
    return *found;
}

// Its own steps, behind those of the run that it has finished.
std::vector<JournalStep> StepsOf(const JournalRun& run, const std::vector<JournalRun>& runs, Way way)
{
    std::vector<JournalStep> steps;
    const auto former = std::ranges::find(runs, run.continues, &JournalRun::name);
    if (way == Way::Back && !run.continues.empty() && former != runs.end())
        steps = StepsOf(*former, runs, way);
    steps.insert(steps.end(), run.steps.begin(), run.steps.end());
    return steps;
}

void RequireSameHandset(const Invocation& invocation, const Handset& handset, const JournalRun& run)
{
    if (invocation.Has(kForce) || RunRecord::IdentityOf(handset) == run.handset)
        return;
    throw Failure(kRefused,
                  fmt::format("{} was on another handset, {} with the serial number {}. Nothing was changed.", run.name,
                              Printable(run.handset.model), Printable(run.handset.serial)),
                  fmt::format("{} does it on this one.", kForce));
}

void Ask(const Invocation& invocation, const std::vector<Part>& parts)
{
    std::vector<std::string> deeds;
    if (const std::string written = AmountToWrite(parts); !written.empty())
        deeds.push_back("write " + written + " to the handset");
    if (const std::string gone = AmountToDelete(parts); !gone.empty())
        deeds.push_back(fmt::format("delete {} from {}", gone, deeds.empty() ? "the handset" : "it"));
    if (deeds.empty())
        return;
    std::string question = fmt::format("{}?", fmt::join(deeds, ", and "));
    question[0] = static_cast<char>(question[0] - 'a' + 'A');
    Confirm(invocation, question);
}

// Another try would find nothing to do: what is not on the handset cannot be held.
bool IsExhausted(const Part& part)
{
    const auto isTried = [](const PlannedEntry& planned) {
        return (planned.action != Action::Add && planned.action != Action::Change) || planned.IsHeld();
    };
    const auto isGone = [](const Deletion& deletion) { return deletion.result == Result::Written; };
    return !part.restoration || (std::ranges::all_of(part.restoration->plan.entries, isTried) &&
                                 std::ranges::all_of(part.restoration->plan.deletions, isGone));
}

// What has changed since, and stays.
std::size_t CountLeft(const std::vector<Part>& parts)
{
    std::size_t count = 0;
    for (const Part& part : parts)
        count += part.restoration ? part.restoration->plan.Count(Action::LeftOut) : 0;
    return count;
}

int Retrace(const Invocation& invocation, Way way)
{
    if (invocation.options.simulator)
        throw Failure(kUsage, "the handset of --simulator ends with each command: no run on it is kept");
    const std::vector<JournalRun> runs = KeptRuns();
    const JournalRun run = RunOf(invocation, runs, way);
    const std::vector<JournalStep> all = StepsOf(run, runs, way);
    std::map<std::string, std::vector<JournalStep>> steps;
    for (const JournalStep& step : all)
        steps[step.kind].push_back(step);
    std::vector<Part> parts;
    for (auto& section : Sections())
        if (steps.contains(section->Name()))
            parts.push_back({std::move(section)});
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        RequireSameHandset(invocation, handset, run);
        fmt::print(stderr, "{}: {}, {}.\n", run.name, run.command, WhatIsIn(run));
        const bool isReady = Prepare(parts, [&](const BackupSection& section) {
            return section.Retrace(invocation, handset, steps[section.Name()], way);
        });
        if (!invocation.Has(kDryRun))
            Ask(invocation, parts);
        JournalRun own{.name = {}, .command = way == Way::Back ? "undo" : "resume"};
        (way == Way::Back ? own.takesBack : own.continues) = run.name;
        RunRecord record(invocation, handset, own);
        status = std::max(isReady ? kDone : kRefused, PutBack(invocation, parts, record));
        const bool isOver =
            status == kDone || (status == kRefused && isReady && std::ranges::all_of(parts, IsExhausted));
        const std::size_t left = CountLeft(parts);
        if (left != 0 && !invocation.Has(kDryRun)) {
            status = std::max(status, kRefused);
            fmt::print(stderr, "{} changed since, and stay{}{}.\n",
                       left == 1 ? "One has" : fmt::format("{} have", left), left == 1 ? "s" : "",
                       invocation.Has(kForce) ? "" : "; --force takes more back");
        }
        const bool isUntouched = left != 0 && !record.HasSteps();
        if (isOver && !isUntouched && !invocation.Has(kDryRun))
            way == Way::Back || record.HasSteps() ? MarkSettled(run) : MarkWhole(run);
    });
    return status;
}

int Undo(const Invocation& invocation)
{
    return invocation.Has(kList) ? List(invocation) : Retrace(invocation, Way::Back);
}

int Resume(const Invocation& invocation)
{
    return Retrace(invocation, Way::Forward);
}

Argument RunArgument()
{
    return {"RUN",
            "A run that 'undo --list' shows, or the beginning of its name (default: the last one)",
            Count::Optional,
            {}};
}

std::vector<CommandOption> RetraceOptions()
{
    return {{kDryRun, "", "Show the plan and write nothing"},
            {kForce, "", "Also what has changed since, and on another handset"},
            {kNoCopy, "", "Keep no copy of what goes, and nothing to take this back with"},
            ConfirmOption()};
}

} // namespace

std::vector<Command> UndoCommands()
{
    std::vector<CommandOption> undoOptions = RetraceOptions();
    undoOptions.push_back({kList, "", "Show the runs that have written, the newest first"});
    return {{"undo",
             "Take back the last run that wrote to the handset",
             "What it deleted comes back, what it changed gets its former values, and what it added goes. What has\n"
             "changed since is shown and stays. The newest 50 runs are kept, also those that were cut off; a run with\n"
             "--no-copy is not. Messages come back newly saved.\n\n"
             "Examples:\n  phnctl undo --dry-run\n  phnctl undo\n  phnctl undo --list\n",
             {RunArgument()},
             Undo,
             undoOptions},
            {"resume",
             "Finish the last run that was cut off",
             "After a lost handset, Ctrl-C or a power cut: what the run had not done yet is done.\n\n"
             "Example:\n  phnctl resume\n",
             {RunArgument()},
             Resume,
             RetraceOptions()}};
}

} // namespace phnctl
