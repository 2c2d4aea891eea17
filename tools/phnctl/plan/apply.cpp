#include "phnctl/plan/apply.h"

#include "phnctl/cli/ending.h"
#include "phnctl/cli/progress.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"

namespace phnctl {

namespace {

class Writer
{
public:
    Writer(const Handset& handset, const EntryKind& kind, const Inventory& inventory, RunRecord& record)
        : m_handset(handset),
          m_kind(kind),
          m_empty(inventory.empty),
          m_record(record),
          m_held(inventory.entries.size() + inventory.unread.size()),
          m_room(m_held + inventory.empty.size())
    {
    }

    // Both return false when the handset is lost.
    bool Delete(Deletion& deletion)
    {
        m_record.BeginAt(deletion.step, deletion.stored.index);
        try {
            m_kind.Delete(m_handset, deletion.stored.index);
            const bool isGone = !m_kind.Read(m_handset, deletion.stored.index);
            deletion.result = isGone ? Result::Written : Result::Failed;
            deletion.problem = isGone ? "" : "the handset accepted that, and still holds it";
            m_record.Done(deletion.step);
            m_losses.Succeeded();
        } catch (const Refusal& refusal) {
            deletion.result = Result::Failed;
            deletion.problem = refusal.what();
            return !m_losses.IsOver(refusal);
        }
        return true;
    }

    bool Write(PlannedEntry& planned)
    {
        try {
            const std::uint32_t index = planned.index ? *planned.index : NextPlace();
            m_record.BeginAt(planned.step, index);
            m_kind.Write(m_handset, index, planned.target);
            planned.index = index;
            const auto stored = m_kind.Read(m_handset, index);
            const Entry held = stored ? m_kind.Storable(*stored) : Entry{};
            planned.readBack = Differences(planned.target, held);
            planned.result = planned.readBack.empty() ? Result::Written : Result::Different;
            m_held += planned.action == Action::Add;
            m_record.DoneAt(planned.step, index, held);
            m_losses.Succeeded();
        } catch (const Refusal& refusal) {
            planned.result = Result::Failed;
            const bool isFull = planned.action == Action::Add && refusal.Code() == PHN_ERROR_RESULT_4;
            planned.problem = isFull ? Fullness() : refusal.what();
            m_isFull = m_isFull || isFull;
            return !m_losses.IsOver(refusal);
        }
        return true;
    }

    bool IsFull() const { return m_isFull; }

private:
    std::uint32_t NextPlace()
    {
        for (; m_next < m_empty.size(); ++m_next)
            if (!m_kind.Read(m_handset, m_empty[m_next]))
                return m_empty[m_next];
        throw Refusal(PHN_ERROR_RESULT_4, "no index is left that holds nothing");
    }

    std::string Fullness() const
    {
        return fmt::format("the handset is full after {} of {}", m_held, Counted(m_room, m_kind.One(), m_kind.Many()));
    }

    const Handset& m_handset;
    const EntryKind& m_kind;
    const std::vector<std::uint32_t>& m_empty;
    RunRecord& m_record;
    std::size_t m_held;
    const std::size_t m_room;
    std::size_t m_next = 0;
    bool m_isFull = false;
    LossWatch m_losses;
};

// False when the rest is not to be tried.
bool WriteEntries(Writer& writer, const EntryKind& kind, Plan& plan, const StopRequest& stop, bool strict)
{
    Progress progress("writing " + kind.Many(), plan.Count(Action::Add) + plan.Count(Action::Change));
    for (PlannedEntry& planned : plan.entries) {
        if (planned.action != Action::Change && (planned.action != Action::Add || plan.isFull))
            continue;
        if (stop.Came()) {
            plan.isInterrupted = true;
            return false;
        }
        const bool goesOn = writer.Write(planned);
        plan.isFull = writer.IsFull();
        if (!goesOn || (strict && planned.result != Result::Written))
            return false;
        progress.Step();
    }
    return true;
}

void DeleteOthers(Writer& writer, const EntryKind& kind, Plan& plan, const StopRequest& stop)
{
    Progress progress("deleting " + kind.Many(), plan.deletions.size());
    for (Deletion& deletion : plan.deletions) {
        if (!plan.IsReadyFor(deletion))
            continue;
        plan.isInterrupted = stop.Came();
        if (plan.isInterrupted || !writer.Delete(deletion))
            return;
        progress.Step();
    }
}

} // namespace

void Apply(const Handset& handset, const EntryKind& kind, Plan& plan, const Inventory& inventory, bool strict,
           RunRecord& record)
{
    record.Expect(kind.Many(), plan, StorableOf(kind, inventory));
    plan.isApplied = true;
    const StopRequest stop;
    Writer writer(handset, kind, inventory, record);
    if (WriteEntries(writer, kind, plan, stop, strict))
        DeleteOthers(writer, kind, plan, stop);
}

} // namespace phnctl
