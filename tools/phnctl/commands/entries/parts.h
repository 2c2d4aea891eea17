// What the commands of this folder share: arguments, help texts in the words of a kind, and one entry by its index.
#pragma once

#include "phnctl/cli/command.h"
#include "phnctl/plan/entry_kind.h"
#include "phnctl/plan/inventory.h"

#include <functional>
#include <string>
#include <vector>

namespace phnctl {

// Throws Failure(kUsage).
std::uint32_t ParseIndex(const std::string& text);

// Throws Refusal, also when nothing is stored there.
Entry ReadOne(const Handset& handset, const EntryKind& kind, std::uint32_t index);

JsonObject EntryJson(const EntryKind& kind, const StoredEntry& stored);

// Everything about one entry, in the order of its fields, behind what is known of it besides.
Report Describe(const EntryKind& kind, const Entry& entry, const std::vector<Field>& details,
                std::vector<Field> before = {});

// The exit status of a command that only reads.
int StatusOf(const Inventory& inventory);

// The text with {one}, {many} and {ext} replaced by the kind's words.
std::string HelpText(const EntryKind& kind, std::string text);

// A command's function for one kind, which must live as long as the program.
std::function<int(const Invocation&)> Bind(int (*function)(const Invocation&, const EntryKind&), const EntryKind& kind);

std::vector<CommandOption> Joined(std::vector<CommandOption> options, const std::vector<CommandOption>& more);

} // namespace phnctl
