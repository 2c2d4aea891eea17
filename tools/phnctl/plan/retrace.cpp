#include "phnctl/plan/retrace.h"

#include <algorithm>
#include <set>
#include <utility>

namespace phnctl {

namespace {

class Retracer
{
public:
    Retracer(std::span<const StoredEntry> stored, Way way, bool force)
        : m_stored(stored), m_isBack(way == Way::Back), m_force(force)
    {
    }

    void Add(const JournalStep& step)
    {
        // A run that was cut off: what it had not begun needs no way back, and what it had done none forward.
        if (m_isBack ? !step.isBegun : step.isDone)
            return;
        const auto& wanted = m_isBack ? step.before : step.after;
        const auto& other = m_isBack ? step.after : step.before;
        if (!wanted)
            Remove(step, *other);
        else if (const StoredEntry* same = Claim(step, *wanted))
            Plan(step, *wanted).Become(*same, *wanted, {});
        else if (const StoredEntry* found = other ? Claim(step, *other) : nullptr)
            Plan(step, *wanted).Become(*found, *wanted, {});
        else if (const StoredEntry* there = At(step); there && other)
            Change(step, *wanted, *there);
        else if (PlannedEntry& planned = Plan(step, *wanted); there)
            planned.index.reset(); // another entry is there: this one gets a place of its own
    }

    phnctl::Plan Take() { return std::move(m_plan); }

private:
    PlannedEntry& Plan(const JournalStep& step, const Entry& wanted)
    {
        PlannedEntry& planned = m_plan.entries.emplace_back();
        planned.from.entry = wanted;
        planned.target = wanted;
        planned.index = step.index;
        return planned;
    }

    void Change(const JournalStep& step, const Entry& wanted, const StoredEntry& there)
    {
        PlannedEntry& planned = Plan(step, wanted);
        if (m_force) {
            m_claimed.insert(there.index);
            planned.Become(there, wanted, {});
        } else {
            Leave(planned);
        }
    }

    void Remove(const JournalStep& step, const Entry& unwanted)
    {
        if (const StoredEntry* found = Claim(step, unwanted)) {
            m_plan.deletions.push_back({*found});
        } else if (m_isBack && step.isDone) {
            PlannedEntry& planned = Plan(step, unwanted);
            planned.index.reset();
            Leave(planned);
        }
    }

    static void Leave(PlannedEntry& planned)
    {
        planned.action = Action::LeftOut;
        planned.Tell("changed-since", "the handset does not hold what the run left there any more, and stays as it is");
    }

    // What is stored under the step's index, when no other step has it.
    const StoredEntry* At(const JournalStep& step) const
    {
        const auto found = std::ranges::find_if(m_stored, [&](const StoredEntry& one) {
            return step.index == one.index && !m_claimed.contains(one.index);
        });
        return found == m_stored.end() ? nullptr : &*found;
    }

    // The entry where the step left it, or where else the handset has it.
    const StoredEntry* Claim(const JournalStep& step, const Entry& entry)
    {
        const StoredEntry* found = At(step);
        if (!found || found->entry != entry) {
            const auto elsewhere = std::ranges::find_if(
                m_stored, [&](const StoredEntry& one) { return one.entry == entry && !m_claimed.contains(one.index); });
            found = elsewhere == m_stored.end() ? nullptr : &*elsewhere;
        }
        if (found)
            m_claimed.insert(found->index);
        return found;
    }

    const std::span<const StoredEntry> m_stored;
    const bool m_isBack;
    const bool m_force;
    std::set<std::uint32_t> m_claimed;
    phnctl::Plan m_plan;
};

} // namespace

Plan Retrace(std::span<const JournalStep> steps, Way way, std::span<const StoredEntry> stored, bool force)
{
    Retracer retracer(stored, way, force);
    for (const JournalStep& step : steps)
        retracer.Add(step);
    return retracer.Take();
}

} // namespace phnctl
