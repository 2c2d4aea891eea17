// Nothing is deleted or replaced without having been asked for by name, and a copy is kept first. Used by every command
// that takes something away: the options, the question and the copy are the same everywhere.
#pragma once

#include "phnctl/cli/command.h"
#include "phnctl/plan/entry_kind.h"
#include "phnctl/plan/inventory.h"
#include "phnctl/plan/plan.h"

#include <span>
#include <string>
#include <vector>

namespace phnctl {

CommandOption ConfirmOption();              // --yes
CommandOption AcceptLossOption();           // kAcceptLoss
std::vector<CommandOption> CopyOptions();   // --copy FILE and --no-copy
std::vector<CommandOption> CopiesOptions(); // --copies FOLDER and --no-copy, where there may be several

// The option without which nothing is deleted or written whose text has been lost to the code page.
inline constexpr const char* kAcceptLoss = "--accept-loss";

// What a copy holds: "contact", "contacts", ".vcf", how many of them, and the file's text.
struct Copy
{
    std::string one;
    std::string many;
    std::string extension;
    std::size_t count;
    std::string text;
};

// Writes the copy to "phnctl-copies/20260102-030405-before-clear/contacts.vcf" in the current folder, one folder for
// all copies of a run, or where the options say, and tells so on standard error; a file that exists is left alone and
// the name gets a number. `phnctl restore` takes such a folder. Nothing with --no-copy, or when there is nothing to
// copy. Throws Failure: then the caller must leave everything as it is.
void KeepCopy(const Invocation& invocation, const std::string& before, const Copy& copy);
void KeepCopy(const Invocation& invocation, const EntryKind& kind, const std::string& before,
              std::span<const StoredEntry> entries);

// Throws Failure when text of these entries has been lost to the code page, so that no copy of them would be whole, and
// the options do not say that this is accepted.
void RequireWholeCopy(const Invocation& invocation, const EntryKind& kind, std::span<const StoredEntry> entries);

// Takes out of a plan what would write the replacement of lost characters over the characters.
void SpareGarbled(const EntryKind& kind, Plan& plan, const Inventory& inventory);

// The answer to a deletion, also of nothing.
void TellDeleted(const Invocation& invocation, std::size_t count, const std::string& one, const std::string& many);

// Asks on the terminal unless --yes was given. Throws Failure when the answer is not yes, or nobody is there to answer.
void Confirm(const Invocation& invocation, const std::string& question);

} // namespace phnctl
