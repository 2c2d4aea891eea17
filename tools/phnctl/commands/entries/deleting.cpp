// delete and clear of every kind of entry.
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/entries/parts.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/inventory.h"
#include "phnctl/plan/losses.h"
#include "phnctl/plan/run_record.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

// All of them, or none is to be deleted.
std::vector<StoredEntry> ReadAll(const Handset& handset, const EntryKind& kind,
                                 const std::vector<std::uint32_t>& indexes)
{
    std::vector<StoredEntry> entries;
    try {
        for (const std::uint32_t index : indexes)
            entries.push_back({index, ReadOne(handset, kind, index)});
    } catch (const Refusal& refusal) {
        throw Refusal(refusal.Code(), fmt::format("{}. Nothing was deleted.", refusal.what()));
    }
    return entries;
}

// Each of them goes.
std::vector<JournalStep> StepsOf(const EntryKind& kind, const std::vector<StoredEntry>& entries)
{
    std::vector<JournalStep> steps;
    for (const StoredEntry& stored : entries)
        steps.push_back({kind.Many(), stored.index, kind.Storable(stored.entry)});
    return steps;
}

int Delete(const Invocation& invocation, const EntryKind& kind)
{
    std::vector<std::uint32_t> indexes;
    for (const std::string& text : invocation.values.at("INDEX"))
        indexes.push_back(ParseIndex(text));
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const std::vector<StoredEntry> entries = ReadAll(handset, kind, indexes);
        RequireWholeCopy(invocation, kind, entries);
        TellLosses(LossesOf(kind, entries), kind.One(), kind.Many());
        for (const StoredEntry& stored : entries)
            fmt::print(stderr, "{}  {}\n", stored.index, Printable(kind.Title(stored.entry)));
        const std::string what =
            entries.size() == 1 ? "this " + kind.One() : fmt::format("these {} {}", entries.size(), kind.Many());
        Confirm(invocation, fmt::format("Delete {}?", what));
        RunRecord record(invocation, handset, kind.Many() + " delete");
        record.KeepCopy(kind, entries);
        const std::size_t first = record.Expect(StepsOf(kind, entries));
        for (std::size_t i = 0; i < entries.size(); ++i) {
            record.BeginAt(first + i, entries[i].index);
            kind.Delete(handset, entries[i].index);
            record.Done(first + i);
        }
        record.Over();
        TellDeleted(invocation, entries.size(), kind.One(), kind.Many());
    });
}

int Clear(const Invocation& invocation, const EntryKind& kind)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const Inventory inventory = TakeInventory(handset, kind, IndexRange());
        TellUnread(kind, inventory);
        if (inventory.entries.empty() && inventory.unread.empty())
            return TellDeleted(invocation, 0, kind.One(), kind.Many());
        if (!inventory.unread.empty() && !invocation.Has(kNoCopy))
            throw Failure(kRefused, fmt::format("{} {} cannot be read, so that no whole copy can be kept; --no-copy "
                                                "deletes them all the same. Nothing was changed.",
                                                inventory.unread.size(), kind.Many()));
        RequireWholeCopy(invocation, kind, inventory.entries);
        TellLosses(LossesOf(kind, inventory.entries), kind.One(), kind.Many());
        Confirm(invocation, fmt::format("Delete all {} of the handset?",
                                        Counted(inventory.entries.size(), kind.One(), kind.Many())));
        RunRecord record(invocation, handset, kind.Many() + " clear");
        record.KeepCopy(kind, inventory.entries);
        const std::size_t first = record.Expect(StepsOf(kind, inventory.entries));
        record.Begin(first, inventory.entries.size());
        kind.DeleteAll(handset);
        record.Done(first, inventory.entries.size());
        record.Over();
        TellDeleted(invocation, inventory.entries.size(), kind.One(), kind.Many());
    });
}

} // namespace

std::vector<Command> DeletingCommands(const EntryKind& kind)
{
    const std::string& many = kind.Many();
    const auto help = [&](const char* text) { return HelpText(kind, text); };
    return {
        {many + " delete",
         help("Delete single {many}"),
         help("Asks first, and keeps a copy.\n\nExample:\n  phnctl {many} delete 4 7\n"),
         {{"INDEX", "The indexes that 'list' shows", Count::Many, {}}},
         Bind(Delete, kind),
         Joined({ConfirmOption(), AcceptLossOption()}, CopyOptions())},
        {many + " clear",
         help("Delete all {many}"),
         help("Asks first, and keeps a copy.\n\nExample:\n  phnctl {many} clear --copy all{ext}\n"),
         {},
         Bind(Clear, kind),
         Joined({ConfirmOption(), AcceptLossOption()}, CopyOptions())},
    };
}

} // namespace phnctl
