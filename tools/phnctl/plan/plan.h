// What an import or a restore is going to do, entry by entry, before anything is written: the heart of every write of
// many entries. It is made from files and an inventory, shown (report.h) and applied (apply.h), and the same
// object keeps what came of it. The words and codes in it are stable: programs read them as JSON.
#pragma once

#include "phnctl/plan/entry_form.h"
#include "phnctl/plan/inventory.h"

#include <optional>
#include <string>
#include <vector>

namespace phnctl {

enum class Action
{
    Add,
    Change,
    Same,       // the handset holds it already, or the file says it twice
    Merged,     // goes into one with another planned entry
    CannotHold, // the notes say why
    NoRoom,     // the handset has no place for one more
    LeftOut,    // nothing to store; the notes say why
};

enum class Result
{
    NotTried,
    Written,   // and read back without a difference
    Different, // written, but the handset holds something else
    Failed,
};

struct PlannedEntry
{
    Candidate from;
    Action action = Action::Add;
    std::optional<std::uint32_t> index; // of the handset's entry that it changes or equals; a new one's, once written
    Entry target;                       // what the handset is to hold
    std::vector<Difference> changes;    // from what it holds now
    std::optional<std::size_t> into;    // the planned entry with which it goes into one

    Result result = Result::NotTried;
    std::string problem;              // why it failed
    std::vector<Difference> readBack; // from the target

    // Nothing for a new entry: its index is this run's alone, as the handset may have stored it under another number.
    std::optional<std::uint32_t> ShownIndex() const;
};

// An entry of the handset that no planned one stands for, and that goes once all that it waits for is on the handset.
struct Deletion
{
    StoredEntry stored;
    std::string series{}; // waits for the entries of this one; empty: for all
    std::vector<Note> notes{};
    Result result = Result::NotTried; // Written: it is gone
    std::string problem{};
};

struct Plan
{
    std::vector<PlannedEntry> entries;
    std::vector<Deletion> deletions; // none unless they were asked for
    bool isApplied = false;
    bool isInterrupted = false;
    bool isFull = false; // the handset took no more

    std::size_t Count(Action action) const;
    std::size_t Count(Action action, Result result) const;
    std::size_t Deleted() const;
    // The handset holds what the file says, as far as it can.
    bool IsHeld(const PlannedEntry& planned) const;
    // All entries, or those of one series, are on the handset.
    bool HoldsAll(const std::string& series = {}) const;
    // And what was to be deleted is gone.
    bool IsWhole() const;
};

// What becomes of that which only the handset's entry holds when a file's entry changes it.
enum class Filling
{
    Replace, // it goes
    Merge,   // it stays, where the form can merge, and a note says so
};

// The code of that note.
inline constexpr const char* kKept = "kept";

// In the candidates' order. Entries that are equal meet first; then an entry changes the one that it was made of, or
// the one with its key that has most in common with it; what is left is added. Of several with one key only those meet
// that are surely the same. Two entries of the files that are surely the same go into one, unless the handset had both.
Plan MakePlan(const EntryForm& form, std::vector<Candidate> candidates, const Inventory& inventory,
              Filling filling = Filling::Replace);

// Only so many of the additions have a place.
void LimitToRoom(Plan& plan, std::size_t room);

inline constexpr const char* kOlderVersion = "older-version";

// Of a series that several files hold in different versions only the newest is meant.
void LeaveOutOlderVersions(const EntryForm& form, std::vector<Candidate>& candidates);

// What earlier imports made of an entry of the files, and what it no longer becomes, is to be deleted: the parts of a
// series that had other exceptions then. Not if the files take it back, or the handset cannot hold what
// it becomes: then a note says what stays.
void DropStaleParts(const EntryForm& form, Plan& plan, const Inventory& inventory);

// The handset's entries that are not after the plan what they were: those that it changes or deletes.
std::vector<StoredEntry> EndangeredBy(const Plan& plan, const Inventory& inventory);

// The plan that stores one candidate under an index, whatever is there now (null: nothing).
Plan MakePlanFor(const EntryForm& form, Candidate candidate, std::uint32_t index, const Entry* present);

} // namespace phnctl
