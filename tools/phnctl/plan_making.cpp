// How the entries of files meet those of the handset.
#include "phnctl/plan.h"

#include <algorithm>
#include <fmt/format.h>
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

// What tells two entries of the files apart.
std::string WholeText(const Entry& entry)
{
    std::string text;
    for (const EntryField& field : entry.fields)
        text.append(field.property).append(1, '\0').append(field.value).append(1, '\0');
    return text;
}

class PlanMaker
{
public:
    PlanMaker(const EntryForm& form, Filling filling, const Inventory& inventory)
        : m_form(form), m_merges(filling == Filling::Merge && form.CanMerge())
    {
        for (const StoredEntry& stored : inventory.entries) {
            Entry entry = form.Storable(stored.entry);
            std::string key = form.Key(entry);
            m_presents.emplace(std::move(key), Present{stored.index, std::move(entry)});
        }
    }

    Plan Make(std::vector<Candidate> candidates)
    {
        Plan plan;
        std::vector<bool> isRepeated;
        for (Candidate& candidate : candidates) {
            const bool isNew = !candidate.isMeant || candidate.entry.fields.empty() ||
                               m_seen.insert(WholeText(candidate.entry)).second;
            isRepeated.push_back(!isNew);
            if (isNew && candidate.isMeant)
                ++m_candidates[m_form.Key(candidate.entry)];
            plan.entries.emplace_back().from = std::move(candidate);
            if (plan.entries.back().from.isMeant)
                TakeEqual(plan.entries.back());
        }
        for (std::size_t i = 0; i < plan.entries.size(); ++i)
            if (PlannedEntry& planned = plan.entries[i];
                !planned.index && m_merges && planned.from.fits && planned.from.isMeant && !isRepeated[i])
                TakeContaining(planned);
        for (std::size_t i = 0; i < plan.entries.size(); ++i)
            if (!plan.entries[i].index)
                Settle(plan.entries[i], isRepeated[i]);
        return plan;
    }

private:
    template <class Condition>
    Present* FindFree(const Entry& wanted, const Condition& condition)
    {
        const auto [first, last] = m_presents.equal_range(m_form.Key(wanted));
        const auto found = std::find_if(
            first, last, [&](const auto& item) { return !item.second.isTaken && condition(item.second.entry); });
        return found == last ? nullptr : &found->second;
    }

    void Take(PlannedEntry& planned, Present& present, Action action)
    {
        present.isTaken = true;
        planned.action = action;
        planned.index = present.index;
        planned.changes = Differences(present.entry, planned.target);
    }

    void TakeEqual(PlannedEntry& planned)
    {
        const Entry& wanted = planned.from.entry;
        Present* const equal =
            FindFree(wanted, [&](const Entry& present) { return m_form.Complete(wanted, &present) == present; });
        if (!equal)
            return;
        planned.target = equal->entry;
        Take(planned, *equal, Action::Same);
    }

    // One that holds more than the file says.
    void TakeContaining(PlannedEntry& planned)
    {
        const Entry& wanted = planned.from.entry;
        Present* const whole =
            FindFree(wanted, [&](const Entry& present) { return m_form.Merge(wanted, present).entry == present; });
        if (!whole)
            return;
        TellKept(planned, m_form.Merge(wanted, whole->entry).kept);
        planned.target = whole->entry;
        Take(planned, *whole, Action::Same);
    }

    void Settle(PlannedEntry& planned, bool isRepeated)
    {
        if (!planned.from.isMeant) {
            planned.action = Action::LeftOut;
        } else if (!planned.from.fits) {
            planned.action = Action::CannotHold;
        } else if (isRepeated) {
            planned.action = Action::Same;
            planned.from.notes.push_back(
                {"repeated", "", planned.from.line, "the files hold it once more, before this one"});
        } else {
            TakeMostSimilar(planned);
        }
    }

    Merged TargetOf(const Entry& wanted, const Entry& present) const
    {
        return m_merges ? m_form.Merge(wanted, present) : Merged{m_form.Complete(wanted, &present), {}};
    }

    void TakeMostSimilar(PlannedEntry& planned)
    {
        const Entry& wanted = planned.from.entry;
        const std::string key = m_form.Key(wanted);
        const auto [first, last] = m_presents.equal_range(key);
        const bool isOnlyOne = m_candidates[key] == 1 && std::distance(first, last) == 1;
        Present* best = nullptr;
        Merged merged;
        std::size_t fewest = 0;
        for (auto item = first; item != last && m_form.CanChange(); ++item) {
            Present& present = item->second;
            if (present.isTaken || !(isOnlyOne || m_form.IsSurelySame(wanted, present.entry)))
                continue;
            Merged target = TargetOf(wanted, present.entry);
            const std::size_t changes = Differences(present.entry, target.entry).size();
            if (best && changes >= fewest)
                continue;
            best = &present;
            merged = std::move(target);
            fewest = changes;
        }
        if (!best) {
            planned.target = m_form.Complete(wanted, nullptr);
            if (m_form.CanMerge() && (first != last || m_candidates[key] > 1))
                TellNamesake(planned, first != last);
            return;
        }
        planned.target = std::move(merged.entry);
        TellKept(planned, merged.kept);
        Take(planned, *best, Action::Change);
    }

    void TellNamesake(PlannedEntry& planned, bool isOnHandset) const
    {
        planned.from.notes.push_back(
            {"namesake", "", planned.from.line,
             fmt::format("another {} of this name is {}; nothing says that they are the same, so both are kept",
                         m_form.One(), isOnHandset ? "on the handset" : "in the files")});
    }

    void TellKept(PlannedEntry& planned, const std::vector<EntryField>& kept) const
    {
        std::string text;
        for (const EntryField& field : kept)
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", m_form.Label(field.property), field.value);
        if (!text.empty())
            planned.from.notes.push_back({kKept, "", planned.from.line,
                                          text + ": only the handset has it, and it stays; --replace takes it off"});
    }

    const EntryForm& m_form;
    const bool m_merges;
    PresentByKey m_presents;
    std::map<std::string, std::size_t> m_candidates; // how many of the files have a key, without repetitions
    std::set<std::string> m_seen;
};

} // namespace

Plan MakePlan(const EntryForm& form, std::vector<Candidate> candidates, const Inventory& inventory, Filling filling)
{
    return PlanMaker(form, filling, inventory).Make(std::move(candidates));
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
