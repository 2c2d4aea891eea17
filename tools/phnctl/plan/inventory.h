// What the handset holds of one kind of entry. The library lists nothing, so the indexes are asked one after the other.
// Used by every command that needs more than one entry.
#pragma once

#include "phnctl/cli/command.h"
#include "phnctl/plan/entry_kind.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace phnctl {

struct IndexRange
{
    std::uint32_t first = 0;
    std::uint32_t last = 999;
    bool isGiven = false; // by the person; otherwise the handset tells where its indexes end
};

// The option --range A-B, and what was given with it. RangeOf throws Failure(kUsage).
CommandOption RangeOption();
IndexRange RangeOf(const Invocation& invocation);

// The options of a search for entries to show: the range, and --all.
std::vector<CommandOption> SearchOptions();

struct UnreadEntry
{
    std::uint32_t index = 0;
    std::string problem;
};

struct Inventory
{
    std::vector<StoredEntry> entries; // by index
    std::vector<std::uint32_t> empty; // indexes where nothing is stored
    std::vector<UnreadEntry> unread;
};

// Asks until the range is over or the handset says that there is no such index. One entry that cannot be read does not
// end it; throws Refusal when the handset is lost or three exchanges in a row fail.
Inventory TakeInventory(const Handset& handset, const EntryKind& kind, const IndexRange& range);

// The same until no further entry is likely.
Inventory Glance(const Invocation& invocation, const Handset& handset, const EntryKind& kind);

// The same to show entries: without a given range it ends where no further entry is likely, unless --all was given.
// Then it says so on standard error.
Inventory Search(const Invocation& invocation, const Handset& handset, const EntryKind& kind, const IndexRange& range);

// Its entries in the form in which entries are compared.
std::vector<StoredEntry> StorableOf(const EntryKind& kind, const Inventory& inventory);

// On standard error: each entry that could not be read.
void TellUnread(const EntryKind& kind, const Inventory& inventory);

// And how many have probably lost characters to the code page, which is returned.
std::size_t TellGarbled(const EntryKind& kind, std::span<const StoredEntry> entries);

} // namespace phnctl
