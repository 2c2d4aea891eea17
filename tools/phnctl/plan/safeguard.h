// Nothing is deleted or replaced without having been asked for by name, and none whose copy would not be whole. Used by
// every command that takes something away: the options and the question are the same everywhere.
#pragma once

#include "phnctl/cli/command.h"
#include "phnctl/plan/entry_kind.h"
#include "phnctl/plan/inventory.h"
#include "phnctl/plan/plan.h"

#include <span>
#include <string>
#include <vector>

namespace phnctl {

CommandOption ConfirmOption();    // --yes
CommandOption AcceptLossOption(); // kAcceptLoss

// The option without which nothing is deleted or written whose text has been lost to the code page.
inline constexpr const char* kAcceptLoss = "--accept-loss";

// Throws Failure when text of these entries has been lost to the code page, so that no copy of them would be whole, and
// the options do not say that this is accepted.
void RequireWholeCopy(const Invocation& invocation, const EntryKind& kind, std::span<const StoredEntry> entries);

// Takes out of a plan what would write the replacement of lost characters over the characters.
void SpareGarbled(const EntryKind& kind, Plan& plan, const Inventory& inventory);

// Says in a plan of the entries that it changes what the handset's own text does not bring along, or may pretend.
void TellDoubtfulTexts(const EntryKind& kind, Plan& plan, const Inventory& inventory);

// The answer to a deletion, also of nothing.
void TellDeleted(const Invocation& invocation, std::size_t count, const std::string& one, const std::string& many);

// Asks on the terminal unless --yes was given. Throws Failure when the answer is not yes, or nobody is there to answer.
void Confirm(const Invocation& invocation, const std::string& question);

} // namespace phnctl
