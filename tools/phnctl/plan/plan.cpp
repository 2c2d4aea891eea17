#include "phnctl/plan/plan.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace phnctl {

namespace {

bool IsDone(const PlannedEntry& planned)
{
    return planned.action == Action::LeftOut || planned.IsHeld();
}

} // namespace

std::size_t Plan::Count(Action action) const
{
    return static_cast<std::size_t>(std::count_if(
        entries.begin(), entries.end(), [&](const PlannedEntry& planned) { return planned.action == action; }));
}

std::size_t Plan::Count(Action action, Result result) const
{
    return static_cast<std::size_t>(std::count_if(entries.begin(), entries.end(), [&](const PlannedEntry& planned) {
        return planned.action == action && planned.result == result;
    }));
}

void PlannedEntry::Become(const StoredEntry& present, Entry wanted, std::vector<Note> why)
{
    action = wanted == present.entry ? Action::Same : Action::Change;
    index = present.index;
    changes = Differences(present.entry, wanted);
    target = std::move(wanted);
    std::ranges::move(why, std::back_inserter(from.notes));
}

void PlannedEntry::Repeat()
{
    action = Action::Same;
    Tell("repeated", "the files hold it once more, before this one");
}

void PlannedEntry::Tell(const char* code, std::string text)
{
    from.notes.push_back({code, "", from.line, std::move(text)});
}

std::optional<std::uint32_t> PlannedEntry::ShownIndex() const
{
    return action == Action::Add ? std::nullopt : index;
}

std::size_t Plan::Deleted() const
{
    return static_cast<std::size_t>(std::count_if(deletions.begin(), deletions.end(), [](const Deletion& deletion) {
        return deletion.result == Result::Written;
    }));
}

bool PlannedEntry::IsHeld() const
{
    return action == Action::Same || result == Result::Written;
}

bool PlannedEntry::KeepsMore() const
{
    return std::ranges::find(from.notes, kKept, &Note::code) != from.notes.end();
}

bool Plan::HoldsAll() const
{
    return std::ranges::all_of(entries, IsDone);
}

bool Plan::IsReadyFor(const Deletion& deletion) const
{
    if (deletion.waitsFor.empty())
        return HoldsAll();
    return std::ranges::all_of(deletion.waitsFor, [&](std::size_t at) { return IsDone(entries[at]); });
}

bool Plan::IsWhole() const
{
    return HoldsAll() && std::all_of(deletions.begin(), deletions.end(),
                                     [](const Deletion& deletion) { return deletion.result == Result::Written; });
}

std::vector<StoredEntry> EndangeredBy(const Plan& plan, const Inventory& inventory)
{
    std::set<std::uint32_t> indexes;
    for (const PlannedEntry& planned : plan.entries)
        if (planned.action == Action::Change && planned.index)
            indexes.insert(*planned.index);
    for (const Deletion& deletion : plan.deletions)
        indexes.insert(deletion.stored.index);
    std::vector<StoredEntry> endangered;
    std::copy_if(inventory.entries.begin(), inventory.entries.end(), std::back_inserter(endangered),
                 [&](const StoredEntry& stored) { return indexes.contains(stored.index); });
    return endangered;
}

void LimitToRoom(Plan& plan, std::size_t room)
{
    for (PlannedEntry& planned : plan.entries)
        if (planned.action == Action::Add && room-- == 0) {
            planned.action = Action::NoRoom;
            room = 0;
        }
}

Plan MakePlanFor(const EntryKind& kind, Candidate candidate, std::uint32_t index, const Entry* present)
{
    Plan plan;
    PlannedEntry& planned = plan.entries.emplace_back();
    planned.from = std::move(candidate);
    planned.index = index;
    if (present) {
        const Entry before = kind.Storable(*present);
        planned.Become({index, before}, kind.Complete(planned.from.entry, &before), {});
    } else {
        planned.target = kind.Complete(planned.from.entry, nullptr);
    }
    if (!planned.from.fits)
        planned.action = Action::CannotHold;
    return plan;
}

} // namespace phnctl
