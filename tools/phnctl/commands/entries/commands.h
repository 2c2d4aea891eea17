// The commands that every kind of entry has: list, find, get, edit, put, delete, clear, export and import. A kind's
// file returns them, with what only it has; backup and restore use the steps below.
#pragma once

#include "phnctl/cli/command.h"
#include "phnctl/plan/entry_kind.h"
#include "phnctl/plan/inventory.h"
#include "phnctl/plan/plan.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace phnctl {

// The kind must live as long as the program.
std::vector<Command> EntryCommands(const EntryKind& kind);
std::vector<Command> ListingCommands(const EntryKind& kind);  // the ones of listing.cpp
std::vector<Command> ReadingCommands(const EntryKind& kind);  // of reading.cpp
std::vector<Command> WritingCommands(const EntryKind& kind);  // of writing.cpp
std::vector<Command> EditingCommands(const EntryKind& kind);  // of editing.cpp
std::vector<Command> DeletingCommands(const EntryKind& kind); // and of deleting.cpp

// All entries of some files, in order. One whose text was lost to a code page fits only where that is accepted. Throws
// Failure(kUsage) when a file cannot be read.
std::vector<Candidate> ReadCandidates(const EntryKind& kind, const std::vector<std::string>& files, bool acceptsLoss);

inline constexpr const char* kDryRun = "--dry-run";
inline constexpr const char* kForce = "--force"; // over what is there

// --dry-run and --strict.
std::vector<CommandOption> WriteOptions();

// Applies the plan if the invocation says so. The exit status: kDone when the handset then holds all of it,
// kInterrupted after Ctrl-C, otherwise kRefused. `apply` leaves in the plan what came of it.
int CarryOut(const Invocation& invocation, Plan& plan, const std::function<void(bool isStrict)>& apply);

// The same for entries under indexes, with a copy of what is replaced; prints the plan. The run is known by the verb.
int CarryOut(const Invocation& invocation, const Handset& handset, const EntryKind& kind, Plan& plan,
             const Inventory& inventory, const char* verb);

// Stores one entry at an index, or at the first that holds nothing. The exit status.
int Store(const Invocation& invocation, const Handset& handset, const EntryKind& kind, Candidate candidate,
          std::optional<std::uint32_t> index, const char* verb);

// What there is to say of what is typed beside what the handset holds.
using NotesOnTyped = std::function<std::vector<Note>(const Entry& typed, const Inventory& inventory)>;

// Stores what a person has typed, and shows all of it, so that a mistake is seen. Throws Failure(kUsage) where the
// handset would not hold just that. The exit status.
int AddTyped(const Invocation& invocation, const EntryKind& kind, Candidate typed, const NotesOnTyped& notes = {});
std::vector<CommandOption> AddOptions(); // --dry-run and --no-copy

} // namespace phnctl
