// What an import or a restore is going to do, entry by entry, before anything is written: the heart of every write of
// many entries. A kind makes it from files and an inventory (EntryForm::Meet); it is shown (report.h) and applied
// (apply.h), and the same object keeps what came of it. The words and codes in it are stable: programs read them as
// JSON.
#pragma once

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

    Result result = Result::NotTried;
    std::string problem;              // why it failed
    std::vector<Difference> readBack; // from the target
    std::size_t step = 0;             // in the journal of the run that carries it out

    // The decisions, but for those that the action alone says. What is there already stays as it is where it is equal.
    void Become(const StoredEntry& present, Entry wanted, std::vector<Note> why);
    void Repeat(); // the files held it before
    void Tell(const char* code, std::string text);

    // The handset holds what the file says, as far as it can.
    bool IsHeld() const;
    // The handset's entry has what the file's has not; a note says what.
    bool KeepsMore() const;
    // Nothing for a new entry: its index is this run's alone, as the handset may have stored it under another number.
    std::optional<std::uint32_t> ShownIndex() const;
};

// An entry of the handset that no planned one stands for, and that goes once all that it waits for is on the handset.
struct Deletion
{
    StoredEntry stored;
    std::vector<std::size_t> waitsFor{}; // planned entries; none: all
    std::vector<Note> notes{};
    Result result = Result::NotTried; // Written: it is gone
    std::string problem{};
    std::size_t step = 0; // as above
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
    // All entries are on the handset.
    bool HoldsAll() const;
    // And so is what a deletion waits for.
    bool IsReadyFor(const Deletion& deletion) const;
    // And what was to be deleted is gone.
    bool IsWhole() const;
};

// The code of the note on what only the handset's entry has and keeps.
inline constexpr const char* kKept = "kept";

// Only so many of the additions have a place.
void LimitToRoom(Plan& plan, std::size_t room);

// The handset's entries that are not after the plan what they were: those that it changes or deletes.
std::vector<StoredEntry> EndangeredBy(const Plan& plan, const Inventory& inventory);

// The plan that stores one candidate under an index, whatever is there now (null: nothing).
Plan MakePlanFor(const EntryKind& kind, Candidate candidate, std::uint32_t index, const Entry* present);

} // namespace phnctl
