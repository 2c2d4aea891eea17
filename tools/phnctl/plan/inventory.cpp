#include "phnctl/plan/inventory.h"

#include "phnctl/cli/progress.h"
#include "phnctl/plan/likely_end.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>
#include <windows.h>

namespace phnctl {

namespace {

constexpr const char* kRangeOption = "--range";
constexpr const char* kAllOption = "--all";
constexpr std::uint64_t kLargestIndex = 0xFFFFFFFF;

// Until the range is over or the end is reached.
Inventory Ask(const Handset& handset, const EntryKind& kind, const IndexRange& range, LikelyEnd& end)
{
    Inventory inventory;
    LossWatch losses;
    Progress progress("reading " + kind.Many(), range.isGiven ? std::size_t{range.last} - range.first + 1 : 0);
    for (std::uint64_t at = range.first; at <= range.last && !end.IsReached(); ++at) {
        const auto index = static_cast<std::uint32_t>(at);
        try {
            if (auto entry = kind.Read(handset, index)) {
                inventory.entries.push_back({index, std::move(*entry)});
                end.Found();
            } else {
                inventory.empty.push_back(index);
                end.Empty();
            }
            losses.Succeeded();
        } catch (const Refusal& refusal) {
            if (refusal.Code() == PHN_ERROR_INVALID_PARAMETER)
                break;
            if (losses.IsOver(refusal))
                throw;
            inventory.unread.push_back({index, refusal.what()});
            end.NotRead();
        }
        progress.Step();
    }
    return inventory;
}

} // namespace

CommandOption RangeOption()
{
    return {kRangeOption, "A-B", "Only the indexes A to B (default: from 0 to where the handset's end, at most 1000)"};
}

std::vector<CommandOption> SearchOptions()
{
    return {RangeOption(), {kAllOption, "", "Ask every index, also where no further entry is likely"}};
}

IndexRange RangeOf(const Invocation& invocation)
{
    const auto text = invocation.Value(kRangeOption);
    if (!text)
        return {};
    const std::size_t dash = text->find('-');
    const auto first = ParseNumber(std::string_view(*text).substr(0, dash), kLargestIndex);
    const auto last =
        dash == std::string::npos ? first : ParseNumber(std::string_view(*text).substr(dash + 1), kLargestIndex);
    if (!first || !last || *first > *last)
        throw Failure(kUsage, fmt::format("--range '{}': allowed are two indexes such as 0-499, or a single one",
                                          Printable(*text)));
    return {static_cast<std::uint32_t>(*first), static_cast<std::uint32_t>(*last), true};
}

Inventory TakeInventory(const Handset& handset, const EntryKind& kind, const IndexRange& range)
{
    LikelyEnd never = LikelyEnd::Never();
    return Ask(handset, kind, range, never);
}

Inventory Glance(const Invocation& invocation, const Handset& handset, const EntryKind& kind)
{
    LikelyEnd end(kind.Counted(handset, invocation.options));
    return Ask(handset, kind, IndexRange(), end);
}

Inventory Search(const Invocation& invocation, const Handset& handset, const EntryKind& kind, const IndexRange& range)
{
    if (range.isGiven || invocation.Has(kAllOption))
        return TakeInventory(handset, kind, range);
    LikelyEnd end(kind.Counted(handset, invocation.options));
    Inventory inventory = Ask(handset, kind, range, end);
    if (end.IsReached())
        fmt::print(stderr, "{}; {} asks every index.\n", end.Why(kind.One(), kind.Many()), kAllOption);
    return inventory;
}

std::vector<StoredEntry> StorableOf(const EntryKind& kind, const Inventory& inventory)
{
    std::vector<StoredEntry> storable;
    for (const StoredEntry& stored : inventory.entries)
        storable.push_back({stored.index, kind.Storable(stored.entry)});
    return storable;
}

void TellUnread(const EntryKind& kind, const Inventory& inventory)
{
    for (const UnreadEntry& unread : inventory.unread)
        fmt::print(stderr, "phnctl: {} {} was not read: {}\n", kind.One(), unread.index, unread.problem);
}

std::size_t TellGarbled(const EntryKind& kind, std::span<const StoredEntry> entries)
{
    const auto garbled = static_cast<std::size_t>(std::count_if(
        entries.begin(), entries.end(), [&](const StoredEntry& stored) { return kind.LooksGarbled(stored.entry); }));
    if (garbled != 0)
        fmt::print(
            stderr,
            "phnctl: {} {} NOT whole: the '?' in {} may stand for characters that have no place in code page {}.\n"
            "To have all characters, {}.\n",
            garbled, garbled == 1 ? kind.One() + " is" : kind.Many() + " are", garbled == 1 ? "it" : "them", GetACP(),
            host::HowToUseUtf8());
    return garbled;
}

} // namespace phnctl
