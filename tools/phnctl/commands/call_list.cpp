#include "phnctl/commands/call_list.h"

#include "phnctl/cli/progress.h"
#include "phnctl/handset/labels.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/json.h"
#include "phnctl/text/text.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

// The entry that a step of the reading returns; nothing at the end of the list.
template <class Step>
std::optional<StoredCall> TakeStep(const Handset& handset, std::int32_t list, Step step)
{
    StoredCall call{list, {}};
    call.entry.uSize = sizeof call.entry;
    const PHN_ERROR error = step(&call.entry);
    if (error == PHN_ERROR_NO_MORE_ENTRIES)
        return std::nullopt;
    handset.Check(error, fmt::format("reading call list {}", list));
    return call;
}

std::optional<StoredCall> First(const Handset& handset, std::int32_t list)
{
    return TakeStep(handset, list, [&](auto* entry) { return handset.Api().GetFirstCallEntry(list, entry); });
}

// Without an offset from UTC, which nothing tells.
Json TimeJson(const PHN_CALL_ENTRY& entry)
{
    std::string time = ShowTime(entry);
    if (time.empty())
        return {nullptr};
    time[time.find(' ')] = 'T';
    return {time};
}

} // namespace

std::vector<std::int32_t> CallLists(std::optional<std::int32_t> only)
{
    if (only)
        return {*only};
    return {0, 1, 2}; // type 3 names no list
}

std::vector<StoredCall> ReadCalls(const Handset& handset, const std::vector<std::int32_t>& lists)
{
    Progress progress("reading calls", 0);
    std::vector<StoredCall> calls;
    for (const std::int32_t list : lists) {
        for (auto call = First(handset, list); call;
             call = TakeStep(handset, list, [&](auto* entry) { return handset.Api().GetNextCallEntry(entry); })) {
            calls.push_back(*call);
            progress.Step();
        }
    }
    return calls;
}

std::uint32_t CountCalls(const Handset& handset, std::int32_t list)
{
    const std::uint32_t count = handset.Api().GetCallEntryCount(list);
    if (count == 0 && First(handset, list))
        throw Refusal(PHN_ERROR_FAILED, fmt::format("call list {} could not be counted", list));
    return count;
}

std::string ShowTime(const PHN_CALL_ENTRY& entry)
{
    if (entry.wEntry18 == 0 || entry.wEntry17 == 0 || entry.wEntry16 == 0)
        return "";
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", +entry.wEntry18, +entry.wEntry17, +entry.wEntry16,
                       +entry.wEntry12, +entry.wEntry13, +entry.wEntry14);
}

Losses LossesOf(const std::vector<StoredCall>& calls)
{
    if (calls.empty())
        return {};
    return {{kNotRestored, "no call list can be written", calls.size(), {}}};
}

std::string CallsJson(const std::vector<StoredCall>& calls, const Labels& labels)
{
    const std::string unit = labels.DurationUnit("uEntry8");
    JsonList list;
    for (const StoredCall& call : calls) {
        const Json value{std::int64_t{call.entry.uEntry8}};
        JsonObject object{{"list", {std::int64_t{call.list}}}, {"szEntryText", {FromHandset(call.entry.szEntryText)}}};
        object.emplace_back("time", TimeJson(call.entry));
        object.emplace_back("uEntry8", value);
        if (!unit.empty())
            object.emplace_back("duration" + unit, value);
        list.push_back({std::move(object)});
    }
    return WriteJson({JsonObject{{"calls", {std::move(list)}}}}) + '\n';
}

} // namespace phnctl
