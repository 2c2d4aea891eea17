// list and find of every kind of entry.
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/entries/parts.h"
#include "phnctl/commands/wanted.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/inventory.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/table.h"
#include "system/system.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

std::string Table(const EntryKind& kind, const std::vector<StoredEntry>& entries)
{
    std::vector<std::string> headings{"Index"};
    for (std::string& column : kind.Columns())
        headings.push_back(std::move(column));
    std::vector<std::vector<std::string>> rows;
    for (const StoredEntry& stored : entries) {
        auto& row = rows.emplace_back(1, std::to_string(stored.index));
        for (std::string& cell : kind.Row(stored.entry))
            row.push_back(std::move(cell));
    }
    return TableText(headings, rows, host::TerminalWidth(stdout));
}

void Show(const Invocation& invocation, const EntryKind& kind, const std::vector<StoredEntry>& entries)
{
    if (!invocation.options.json) {
        fmt::print("{}{}\n", entries.empty() ? "" : Table(kind, entries) + '\n',
                   Counted(entries.size(), kind.One(), kind.Many()));
        return;
    }
    JsonList list;
    for (const StoredEntry& stored : entries)
        list.push_back({EntryJson(kind, stored)});
    fmt::print("{}\n", WriteJson({JsonObject{{kind.Many(), {std::move(list)}}}}));
}

int List(const Invocation& invocation, const EntryKind& kind)
{
    const IndexRange range = RangeOf(invocation);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        const Inventory inventory = Search(invocation, handset, kind, range);
        TellUnread(kind, inventory);
        TellGarbled(kind, inventory.entries);
        status = StatusOf(inventory);
        Show(invocation, kind, inventory.entries);
    });
    return status;
}

int Find(const Invocation& invocation, const EntryKind& kind)
{
    const IndexRange range = RangeOf(invocation);
    const Wanted wanted(invocation);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        Inventory inventory = Search(invocation, handset, kind, range);
        TellUnread(kind, inventory);
        std::erase_if(inventory.entries,
                      [&](const StoredEntry& stored) { return !wanted.IsIn(kind.Sought(stored.entry)); });
        TellGarbled(kind, inventory.entries);
        status = inventory.entries.empty() ? kRefused : StatusOf(inventory);
        if (inventory.entries.empty() && !invocation.options.json)
            fmt::print("No {} has '{}'.\n", kind.One(), wanted.Shown());
        else
            Show(invocation, kind, inventory.entries);
    });
    return status;
}

} // namespace

std::vector<Command> ListingCommands(const EntryKind& kind)
{
    const std::string& many = kind.Many();
    const auto help = [&](const char* text) { return HelpText(kind, text); };
    return {
        {many + " list",
         help("List the {many} of the handset"),
         help("Example:\n  phnctl {many} list\n  phnctl {many} list --range 0-49 --json\n"),
         {},
         Bind(List, kind),
         SearchOptions()},
        {many + " find",
         help("List the {many} that have some words or a number"),
         kFindDetails + help("\nExamples:\n  phnctl {many} find anna\n  phnctl {many} find 555-0142 --json\n"),
         {WantedArgument()},
         Bind(Find, kind),
         SearchOptions()},
    };
}

} // namespace phnctl
