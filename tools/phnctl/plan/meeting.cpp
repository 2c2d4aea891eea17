#include "phnctl/plan/meeting.h"

#include <map>
#include <set>

namespace phnctl {

namespace {

class PlanMaker
{
public:
    PlanMaker(const EntryForm& form, const MeetingRules& rules, const std::vector<StoredEntry>& presents)
        : m_form(form), m_rules(rules)
    {
        for (const StoredEntry& present : presents)
            m_free.emplace(rules.key(present.entry), &present);
    }

    Plan Make(std::vector<Candidate> candidates)
    {
        for (Candidate& candidate : candidates)
            Accept(std::move(candidate));
        for (const auto round : {&PlanMaker::MeetEqual, &PlanMaker::MeetUnchanged, &PlanMaker::Settle})
            for (Open& open : m_open)
                open.isSettled = open.isSettled || (this->*round)(open);
        return std::move(m_plan);
    }

private:
    using Free = std::multimap<std::string, const StoredEntry*>; // by key; of the handset's entries

    enum class Changes
    {
        None,
        Any,
    };

    struct Open
    {
        std::size_t at; // in the plan
        std::string key;
        bool isRepeated;
        bool isSettled = false;
    };

    void Accept(Candidate candidate)
    {
        const Entry& entry = candidate.entry;
        const bool isNew = !candidate.isMeant || entry.fields.empty() || m_seen.insert(entry.Text()).second;
        m_open.push_back({m_plan.entries.size(), m_rules.key(entry), !isNew});
        m_plan.entries.emplace_back().from = std::move(candidate);
    }

    // The rounds. Each is true when it settles what becomes of an entry.

    bool MeetEqual(const Open& open)
    {
        const Candidate& from = m_plan.entries[open.at].from;
        return from.isMeant && MeetBest(open, Changes::None, [&](const Entry& present) {
                   return std::optional(Outcome{m_form.Complete(from.entry, &present)});
               });
    }

    bool MeetUnchanged(const Open& open)
    {
        const Candidate& from = m_plan.entries[open.at].from;
        const bool mayMeet = from.isMeant && from.fits && !open.isRepeated;
        return mayMeet && MeetBest(open, Changes::None, ByRules(from));
    }

    bool Settle(const Open& open)
    {
        PlannedEntry& planned = m_plan.entries[open.at];
        const Candidate& from = planned.from;
        if (!from.isMeant)
            planned.action = Action::LeftOut;
        else if (!from.fits)
            planned.action = Action::CannotHold;
        else if (open.isRepeated)
            planned.Repeat();
        else if (!MeetBest(open, Changes::Any, ByRules(from)))
            planned.target = m_form.Complete(from.entry, nullptr); // added
        return true;
    }

    using OutcomeFor = std::function<std::optional<Outcome>(const Entry& present)>;

    OutcomeFor ByRules(const Candidate& from) const
    {
        return [&](const Entry& present) { return m_rules.outcome(from, present); };
    }

    // The free one that changes least.
    bool MeetBest(const Open& open, Changes allowed, const OutcomeFor& outcomeFor)
    {
        auto best = m_free.end();
        Outcome chosen;
        std::size_t fewest = 0;
        const auto [first, last] = m_free.equal_range(open.key);
        for (auto item = first; item != last; ++item) {
            const Entry& present = item->second->entry;
            auto outcome = outcomeFor(present);
            if (!outcome || (allowed == Changes::None && outcome->target != present))
                continue;
            const std::size_t changes = Differences(present, outcome->target).size();
            if (best != m_free.end() && changes >= fewest)
                continue;
            best = item;
            chosen = std::move(*outcome);
            fewest = changes;
        }
        if (best == m_free.end())
            return false;
        m_plan.entries[open.at].Become(*best->second, std::move(chosen.target), std::move(chosen.notes));
        m_free.erase(best);
        return true;
    }

    const EntryForm& m_form;
    const MeetingRules& m_rules;
    Free m_free;
    std::vector<Open> m_open;
    std::set<std::string> m_seen;
    Plan m_plan;
};

} // namespace

Plan Meet(const EntryForm& form, const MeetingRules& rules, std::vector<Candidate> candidates,
          const std::vector<StoredEntry>& presents)
{
    return PlanMaker(form, rules, presents).Make(std::move(candidates));
}

} // namespace phnctl
