// phnctl calls: the call lists of a handset.
#include "phnctl/commands/call_list.h"
#include "phnctl/commands/exporting.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/labels.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/run_record.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/csv.h"
#include "phnctl/text/table.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr const char* kJson = "json";

std::vector<std::int32_t> ListsOf(const Invocation& invocation)
{
    const auto list = invocation.Value("LIST"); // a digit, by the argument's allowed values
    return CallLists(list ? std::optional<std::int32_t>((*list)[0] - '0') : std::nullopt);
}

std::string ListName(const Labels& labels, std::int32_t list)
{
    return labels.Named("callList", list).shown;
}

int List(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const Labels labels = LabelsOf(invocation.options, handset);
        const std::vector<StoredCall> calls = ReadCalls(handset, ListsOf(invocation));
        if (invocation.options.json)
            return fmt::print("{}", CallsJson(calls, labels));
        std::vector<std::vector<std::string>> rows;
        for (const StoredCall& call : calls)
            rows.push_back({ListName(labels, call.list), FromHandset(call.entry.szEntryText), ShowTime(call.entry),
                            labels.Named("uEntry8", std::uint32_t{call.entry.uEntry8}).shown});
        const std::string table = TableText(
            {"List", labels.Named("szEntryText", std::string()).label, "Time", labels.Named("uEntry8", 0).label}, rows,
            host::TerminalWidth(stdout));
        fmt::print("{}{}\n", calls.empty() ? "" : table + '\n', Counted(calls.size(), "call"));
    });
}

// Numbers as the handset keeps them, to be reckoned with.
std::string Sheet(const std::vector<StoredCall>& calls, const Labels& labels)
{
    const std::string unit = labels.DurationUnit("uEntry8");
    const char* const inUnit = unit.empty() ? "" : unit == "Ms" ? " (ms)" : " (s)";
    std::vector<std::vector<std::string>> rows;
    for (const StoredCall& call : calls)
        rows.push_back({ListName(labels, call.list), FromHandset(call.entry.szEntryText), ShowTime(call.entry),
                        std::to_string(call.entry.uEntry8)});
    return CsvText(
        {"List", labels.Named("szEntryText", std::string()).label, "Time", labels.Named("uEntry8", 0).label + inUnit},
        rows);
}

int Export(const Invocation& invocation)
{
    const bool isSheet = WantsCsv(invocation, kJson);
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const Labels labels = LabelsOf(invocation.options, handset);
        const std::vector<StoredCall> calls = ReadCalls(handset, ListsOf(invocation));
        WriteExport(invocation, isSheet ? Sheet(calls, labels) : CallsJson(calls, labels), calls.size(), "call");
    });
}

int ShowCounts(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const Labels labels = LabelsOf(invocation.options, handset);
        std::size_t total = 0;
        std::vector<std::vector<std::string>> rows;
        JsonList counts;
        for (const std::int32_t list : ListsOf(invocation)) {
            const std::uint32_t count = CountCalls(handset, list);
            total += count;
            rows.push_back({ListName(labels, list), std::to_string(count)});
            counts.push_back({JsonObject{{"list", {std::int64_t{list}}}, {"calls", {std::int64_t{count}}}}});
        }
        if (invocation.options.json)
            return fmt::print("{}\n", WriteJson({JsonObject{{"lists", {std::move(counts)}}}}));
        fmt::print("{}\n{}\n", TableText({"List", "Calls"}, rows, host::TerminalWidth(stdout)), Counted(total, "call"));
    });
}

int Clear(const Invocation& invocation)
{
    const std::vector<std::int32_t> lists = ListsOf(invocation);
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const Labels labels = LabelsOf(invocation.options, handset);
        const std::vector<StoredCall> calls = ReadCalls(handset, lists);
        if (calls.empty())
            return TellDeleted(invocation, 0, "call", "calls");
        const std::string where = lists.size() == 1 ? "of list " + ListName(labels, lists.front()) : "of all lists";
        TellLosses(LossesOf(calls), "call", "calls");
        Confirm(invocation, fmt::format("Delete all {} {}?", Counted(calls.size(), "call"), Printable(where)));
        RunRecord(invocation, handset, "calls clear")
            .KeepCopy({"call", "calls", ".json", calls.size(), CallsJson(calls, labels)});
        for (const std::int32_t list : lists)
            handset.Check(handset.Api().ClearCallEntries(list), fmt::format("clearing call list {}", list));
        TellDeleted(invocation, calls.size(), "call", "calls");
    });
}

} // namespace

std::vector<Command> CallsCommands()
{
    const Argument list{"LIST", "The number of one list; all lists without it", Count::Optional, {"0", "1", "2"}};
    std::vector<CommandOption> options = CopyOptions();
    options.insert(options.begin(), ConfirmOption());
    return {{"calls", "List, count and delete the calls that the handset remembers", "", {}, nullptr},
            {"calls list",
             "List the calls of all lists, or of one",
             "Lists and values have the names that the label file of the model gives them. Times are shown as the\n"
             "handset keeps them.\n\nExamples:\n  phnctl calls list\n  phnctl calls list 1 --json\n",
             {list},
             List},
            {"calls count", "Count the calls of each list", "Example:\n  phnctl calls count\n", {list}, ShowCounts},
            {"calls export",
             "Write the calls of all lists, or of one, to a file",
             "Values are those of the handset: a length of time is not made readable.\n\n"
             "Example:\n  phnctl calls export calls.csv --format csv\n",
             {ExportArgument(), list},
             Export,
             ExportOptions(kJson)},
            {"calls clear",
             "Delete all calls of all lists, or of one",
             "Asks first; a copy of them is kept in a JSON file.\n\nExample:\n  phnctl calls clear 2\n",
             {list},
             Clear,
             options}};
}

} // namespace phnctl
