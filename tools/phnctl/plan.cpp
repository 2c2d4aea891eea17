#include "phnctl/plan.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

namespace phnctl {

namespace {

// The handset's entry in the form in which it is compared, while no planned entry has taken it.
struct Present
{
    std::uint32_t index = 0;
    Entry entry;
    bool isTaken = false;
};

using PresentByKey = std::multimap<std::string, Present>;

PresentByKey ArrangeByKey(const EntryForm& form, const Inventory& inventory)
{
    PresentByKey presents;
    for (const StoredEntry& stored : inventory.entries) {
        Entry entry = form.Storable(stored.entry);
        std::string key = form.Key(entry);
        presents.emplace(std::move(key), Present{stored.index, std::move(entry)});
    }
    return presents;
}

void Take(PlannedEntry& planned, Present& present, Action action)
{
    present.isTaken = true;
    planned.action = action;
    planned.index = present.index;
}

bool TakeEqual(const EntryForm& form, PlannedEntry& planned, PresentByKey& presents)
{
    const auto [first, last] = presents.equal_range(form.Key(planned.from.entry));
    const auto equal = std::find_if(first, last, [&](const auto& item) {
        return !item.second.isTaken && form.Complete(planned.from.entry, &item.second.entry) == item.second.entry;
    });
    if (equal == last)
        return false;
    planned.target = equal->second.entry;
    Take(planned, equal->second, Action::Same);
    return true;
}

void TakeMostSimilar(const EntryForm& form, PlannedEntry& planned, PresentByKey& presents)
{
    Present* best = nullptr;
    const auto [first, last] = presents.equal_range(form.Key(planned.from.entry));
    for (auto item = first; item != last && form.CanChange(); ++item) {
        if (item->second.isTaken)
            continue;
        Entry target = form.Complete(planned.from.entry, &item->second.entry);
        auto changes = Differences(item->second.entry, target);
        if (best && changes.size() >= planned.changes.size())
            continue;
        best = &item->second;
        planned.target = std::move(target);
        planned.changes = std::move(changes);
    }
    if (best)
        return Take(planned, *best, Action::Change);
    planned.target = form.Complete(planned.from.entry, nullptr);
    planned.action = Action::Add;
}

// What tells two entries of the files apart.
std::string WholeText(const Entry& entry)
{
    std::string text;
    for (const EntryField& field : entry.fields)
        text.append(field.property).append(1, '\0').append(field.value).append(1, '\0');
    return text;
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

bool Plan::HoldsAll() const
{
    return std::all_of(entries.begin(), entries.end(), [](const PlannedEntry& planned) {
        return planned.action == Action::Same || planned.result == Result::Written;
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

Plan MakePlan(const EntryForm& form, std::vector<Candidate> candidates, const Inventory& inventory)
{
    PresentByKey presents = ArrangeByKey(form, inventory);
    std::set<std::string> seen;
    std::vector<bool> isSettled;
    Plan plan;
    for (Candidate& candidate : candidates) {
        PlannedEntry& planned = plan.entries.emplace_back();
        planned.from = std::move(candidate);
        const bool isRepeated =
            !planned.from.entry.fields.empty() && !seen.insert(WholeText(planned.from.entry)).second;
        isSettled.push_back(TakeEqual(form, planned, presents) || isRepeated || !planned.from.fits);
        if (planned.index)
            continue;
        planned.action = isRepeated && planned.from.fits ? Action::Same : Action::CannotHold;
        if (planned.action == Action::Same)
            planned.from.notes.push_back(
                {"repeated", "", planned.from.line, "the files hold it once more, before this one"});
    }
    for (std::size_t i = 0; i < plan.entries.size(); ++i)
        if (!isSettled[i])
            TakeMostSimilar(form, plan.entries[i], presents);
    return plan;
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
