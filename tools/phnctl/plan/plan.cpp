#include "phnctl/plan/plan.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace phnctl {

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

bool Plan::IsHeld(const PlannedEntry& planned) const
{
    const PlannedEntry& one = planned.into ? entries[*planned.into] : planned;
    return one.action == Action::Same || one.result == Result::Written;
}

bool Plan::HoldsAll(const std::string& series) const
{
    return std::all_of(entries.begin(), entries.end(), [&](const PlannedEntry& planned) {
        const bool isOther = !series.empty() && planned.from.series != series;
        return isOther || planned.action == Action::LeftOut || IsHeld(planned);
    });
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

Plan MakePlanFor(const EntryForm& form, Candidate candidate, std::uint32_t index, const Entry* present)
{
    Plan plan;
    PlannedEntry& planned = plan.entries.emplace_back();
    planned.from = std::move(candidate);
    planned.index = index;
    const Entry before = present ? form.Storable(*present) : Entry{};
    planned.target = form.Complete(planned.from.entry, present ? &before : nullptr);
    if (present)
        planned.changes = Differences(before, planned.target);
    if (!planned.from.fits)
        planned.action = Action::CannotHold;
    else if (present)
        planned.action = planned.target == before ? Action::Same : Action::Change;
    return plan;
}

} // namespace phnctl
