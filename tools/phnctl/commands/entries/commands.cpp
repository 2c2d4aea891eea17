#include "phnctl/commands/entries/commands.h"

#include "phnctl/commands/entries/parts.h"

#include <utility>

namespace phnctl {

std::vector<Command> EntryCommands(const EntryKind& kind)
{
    std::vector<Command> commands{
        {kind.Many(), HelpText(kind, "List, read, write, export and import {many}"), "", {}, nullptr}};
    for (auto* some : {ListingCommands, ReadingCommands, WritingCommands, EditingCommands, DeletingCommands})
        for (Command& command : some(kind))
            commands.push_back(std::move(command));
    return commands;
}

} // namespace phnctl
