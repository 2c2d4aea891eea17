// How the entries of files meet those of the handset, and each other.
#include "phnctl/plan/counts.h"
#include "phnctl/plan/notes.h"
#include "phnctl/plan/plan.h"
#include "phnctl/plan/presents.h"

#include <algorithm>
#include <map>

namespace phnctl {

namespace {

class PlanMaker
{
public:
    PlanMaker(const EntryForm& form, Filling filling, const Inventory& inventory)
        : m_form(form),
          m_merges(filling == Filling::Merge && form.CanMerge()),
          m_counts(form),
          m_presents(form, inventory)
    {
    }

    Plan Make(std::vector<Candidate> candidates)
    {
        for (Candidate& candidate : candidates)
            Accept(std::move(candidate));
        for (const auto step :
             {&PlanMaker::TakeEqual, &PlanMaker::TakeOrigin, &PlanMaker::TakeContaining, &PlanMaker::Settle})
            for (std::size_t at = 0; at < m_states.size(); ++at)
                if (!m_states[at].isSettled)
                    m_states[at].isSettled = (this->*step)(at);
        for (std::size_t at = 0; at < m_states.size(); ++at)
            TellOutcome(m_plan.entries[at], m_states[at]);
        return std::move(m_plan);
    }

private:
    struct State
    {
        bool isRepeated = false;
        bool isSettled = false;
        std::vector<EntryField> kept{};   // what the handset has, and no entry of the files that goes into one with it
        std::vector<EntryField> noRoom{}; // what kept it from going into one of the handset or of the files
        bool isBeside = false;            // some of it, or all, goes beside what is there
    };

    void Accept(Candidate candidate)
    {
        m_states.push_back({!m_counts.Add(candidate)});
        m_plan.entries.emplace_back().from = std::move(candidate);
    }

    // The steps. Each is true when it settles what becomes of a planned entry.

    bool TakeEqual(std::size_t at)
    {
        const Candidate& from = m_plan.entries[at].from;
        return from.isMeant &&
               TakeAsItIs(at, [&](const Entry& present) { return Merged{m_form.Complete(from.entry, &present)}; });
    }

    // What was made of an entry that the handset holds as it was then, and changed: the file's values are meant. Of
    // several that were made of one, some are copies that became something else: there the key must be its, too.
    bool TakeOrigin(std::size_t at)
    {
        const Candidate& from = m_plan.entries[at].from;
        if (!MayMeet(at) || from.origin.empty())
            return false;
        const bool isCopied = m_counts.IsCopied(from.origin);
        const std::vector<Present*> presents = m_presents.WithOrigin(from.origin);
        const auto free = std::find_if(presents.begin(), presents.end(), [&](Present* item) {
            return !item->owner && !(isCopied && m_form.Key(item->before) != m_form.Key(from.entry));
        });
        if (free == presents.end())
            return false;
        Merged target = TargetOf(from, (*free)->entry);
        if (!target.leftOut.empty())
            return false;
        Take(at, **free, std::move(target));
        return true;
    }

    // One that holds more than the file says.
    bool TakeContaining(std::size_t at)
    {
        return m_merges && MayMeet(at) &&
               TakeAsItIs(at, [&](const Entry& present) { return TargetOf(m_plan.entries[at].from, present); });
    }

    bool Settle(std::size_t at)
    {
        PlannedEntry& planned = m_plan.entries[at];
        if (!planned.from.isMeant) {
            planned.action = Action::LeftOut;
        } else if (!planned.from.fits) {
            planned.action = Action::CannotHold;
        } else if (m_states[at].isRepeated) {
            planned.action = Action::Same;
            TellRepeated(planned.from);
        } else if (!TakeMostSimilar(at)) {
            Add(at);
        }
        return true;
    }

    bool MayMeet(std::size_t at) const
    {
        const Candidate& from = m_plan.entries[at].from;
        return from.isMeant && from.fits && !m_states[at].isRepeated;
    }

    // One that the plan has no reason to change.
    template <class Target>
    bool TakeAsItIs(std::size_t at, const Target& targetFor)
    {
        for (Present* const present : m_presents.WithKey(m_form.Key(m_plan.entries[at].from.entry))) {
            if (present->owner)
                continue;
            Merged target = targetFor(present->entry);
            if (target.entry != present->entry || !target.leftOut.empty())
                continue;
            Take(at, *present, std::move(target));
            return true;
        }
        return false;
    }

    Merged TargetOf(const Candidate& from, const Entry& present) const
    {
        return m_merges ? m_form.Merge(from.entry, present, from.origin)
                        : Merged{m_form.Complete(from.entry, &present)};
    }

    // Into the free one that changes least, or else into what another entry of the files is for.
    bool TakeMostSimilar(std::size_t at)
    {
        if (!m_form.CanChange())
            return false;
        const Candidate& from = m_plan.entries[at].from;
        const Entry& wanted = from.entry;
        const std::string key = m_form.Key(wanted);
        const std::vector<Present*> presents = m_presents.WithKey(key);
        const bool isOnlyOne = m_counts.IsOnlyOne(key) && presents.size() == 1;
        Present* best = nullptr;
        Merged target;
        std::size_t fewest = 0;
        for (Present* const present : presents) {
            if (present->owner || !(isOnlyOne || AreSurelySame(m_form, wanted, present->entry)))
                continue;
            Merged merged = TargetOf(from, present->entry);
            const std::size_t changes = Differences(present->entry, merged.entry).size();
            if (!merged.leftOut.empty()) {
                m_states[at].noRoom = std::move(merged.leftOut);
            } else if (!best || changes < fewest) {
                best = present;
                target = std::move(merged);
                fewest = changes;
            }
        }
        if (best) {
            Take(at, *best, std::move(target));
            return true;
        }
        Present* const owned = m_presents.OwnedLike(wanted);
        return owned && GoInto(at, *owned);
    }

    void Take(std::size_t at, Present& present, Merged target)
    {
        PlannedEntry& planned = m_plan.entries[at];
        planned.action = target.entry == present.before ? Action::Same : Action::Change;
        planned.index = present.index;
        planned.changes = Differences(present.before, target.entry);
        planned.target = std::move(target.entry);
        TellDisplaced(planned.from, m_form, target);
        m_states[at].isBeside = !target.displaced.empty();
        m_states[at].kept = std::move(target.kept);
        m_presents.Own(present, at, planned.target);
    }

    // Values that both have stay where the other entry of the files put them.
    static Entry WithoutMoves(Entry wanted, const Entry& present)
    {
        for (EntryField& field : wanted.fields)
            field.hasAnyPlace =
                field.hasAnyPlace || std::any_of(present.fields.begin(), present.fields.end(),
                                                 [&](const EntryField& other) { return other.value == field.value; });
        return wanted;
    }

    // One with the planned entry that stands for it already; false when it has no room.
    bool GoInto(std::size_t at, Present& present)
    {
        PlannedEntry& planned = m_plan.entries[at];
        PlannedEntry& owner = m_plan.entries[*present.owner];
        const bool areTwo =
            !planned.from.origin.empty() && !owner.from.origin.empty() && planned.from.origin != owner.from.origin;
        Merged merged = m_form.Merge(WithoutMoves(planned.from.entry, present.entry), present.entry, {});
        m_states[at].noRoom = merged.leftOut;
        if (areTwo || !merged.leftOut.empty())
            return false;
        planned.action = Action::Merged;
        planned.into = *present.owner;
        planned.index = present.index;
        planned.target = merged.entry;
        TellMerged(planned.from, m_form, owner.from);
        TellDisplaced(planned.from, m_form, merged);
        std::erase_if(m_states[*present.owner].kept, [&](const EntryField& field) {
            return std::find(merged.kept.begin(), merged.kept.end(), field) == merged.kept.end();
        });
        if (present.index) {
            owner.changes = Differences(present.before, merged.entry);
            owner.action = owner.changes.empty() ? Action::Same : Action::Change;
        }
        owner.target = merged.entry;
        m_presents.Own(present, *present.owner, owner.target);
        return true;
    }

    void Add(std::size_t at)
    {
        PlannedEntry& planned = m_plan.entries[at];
        planned.target = m_form.Complete(planned.from.entry, nullptr);
        ++m_additions[m_form.Key(planned.from.entry)];
        std::string mark;
        if (const Present* const other = m_presents.OtherWithMarkOf(planned.from.entry, mark)) {
            m_states[at].isBeside = true;
            TellShared(planned.from, m_form, other->before, mark);
        }
        m_presents.Add(at, planned.target);
    }

    void TellOutcome(PlannedEntry& planned, const State& state)
    {
        const std::string key = m_form.Key(planned.from.entry);
        const bool isOnHandset = !m_presents.WithKey(key).empty();
        if (m_form.CanMerge() && planned.action == Action::Add && (isOnHandset || m_additions[key] > 1))
            TellNamesake(planned.from, m_form, isOnHandset, state.noRoom);
        if (state.isBeside && !planned.from.origin.empty() && m_presents.WithOrigin(planned.from.origin).empty())
            TellOldExport(planned.from, m_form);
        TellKept(planned.from, m_form, state.kept);
    }

    const EntryForm& m_form;
    const bool m_merges;
    Counts m_counts; // of the files
    Presents m_presents;
    Plan m_plan;
    std::vector<State> m_states;                    // of the plan's entries
    std::map<std::string, std::size_t> m_additions; // how many entries of a key the plan adds
};

} // namespace

Plan MakePlan(const EntryForm& form, std::vector<Candidate> candidates, const Inventory& inventory, Filling filling)
{
    return PlanMaker(form, filling, inventory).Make(std::move(candidates));
}

} // namespace phnctl
