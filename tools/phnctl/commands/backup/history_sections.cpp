#include "phnctl/commands/backup/history_sections.h"

#include "phnctl/cli/ending.h"
#include "phnctl/cli/progress.h"
#include "phnctl/commands/call_list.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/messages/form.h"
#include "phnctl/messages/list.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>
#include <stdexcept>
#include <utility>

namespace phnctl {

namespace {

Inventory MessagesOf(const Handset& handset)
{
    Inventory inventory;
    for (const StoredMessage& message : ReadMessages(handset, Boxes(std::nullopt)))
        inventory.entries.push_back({message.index, MessageEntry(message.pdu.content)});
    return inventory;
}

std::vector<Candidate> CandidatesOf(const std::filesystem::path& file)
{
    try {
        return MessagesOfFile(TextOf(file), ReadText(TextOf(file)));
    } catch (const std::runtime_error& error) {
        throw Failure(kUsage, fmt::format("{}: {}", Printable(TextOf(file)), Printable(error.what())));
    }
}

// Saves a message that is missing. False when the rest is in vain.
bool SaveOne(const Handset& handset, PlannedEntry& planned, RunRecord& record)
{
    record.Begin(planned.step);
    try {
        planned.index = PutMessage(handset, handset.Api().SaveMessage, SavingPdu(planned.target), "saving a message");
        planned.result = Result::Written;
    } catch (const Refusal& refusal) {
        planned.result = Result::Failed;
        planned.problem = refusal.what();
        return !refusal.IsLoss();
    } catch (const Failure& failure) { // no PDU can carry it
        planned.result = Result::Failed;
        planned.problem = failure.what();
    }
    return true;
}

void SaveMissing(const Handset& handset, Plan& plan, const StopRequest& stop, bool isStrict, RunRecord& record)
{
    Progress progress("writing messages", plan.Count(Action::Add));
    for (PlannedEntry& planned : plan.entries) {
        if (planned.action != Action::Add)
            continue;
        plan.isInterrupted = stop.Came();
        if (plan.isInterrupted || !SaveOne(handset, planned, record) || (isStrict && planned.result != Result::Written))
            return;
        progress.Step();
    }
}

// One listing tells for all of them what the handset made of it.
void ReadBack(const Handset& handset, Plan& plan, RunRecord& record)
{
    const Inventory inventory = MessagesOf(handset);
    for (PlannedEntry& planned : plan.entries) {
        if (planned.result != Result::Written)
            continue;
        const auto stored = std::find_if(inventory.entries.begin(), inventory.entries.end(),
                                         [&](const StoredEntry& entry) { return entry.index == planned.index; });
        const Entry entry = stored == inventory.entries.end() ? Entry{} : stored->entry;
        record.DoneAt(planned.step, *planned.index, entry);
        planned.readBack = Differences(MessageForm().Complete(planned.from.entry, &entry), entry);
        if (!planned.readBack.empty())
            planned.result = Result::Different;
    }
}

// False when the rest is in vain.
bool DeleteOne(const Handset& handset, Deletion& deletion, RunRecord& record)
{
    record.BeginAt(deletion.step, deletion.stored.index);
    try {
        DeleteMessage(handset, static_cast<std::uint16_t>(deletion.stored.index));
        deletion.result = Result::Written;
        record.Done(deletion.step);
    } catch (const Refusal& refusal) {
        deletion.result = Result::Failed;
        deletion.problem = refusal.what();
        return !refusal.IsLoss();
    }
    return true;
}

void ApplyMessages(const Handset& handset, Plan& plan, bool isStrict, RunRecord& record)
{
    record.Expect(MessageForm().Many(), plan, MessagesOf(handset).entries);
    plan.isApplied = true;
    const StopRequest stop;
    SaveMissing(handset, plan, stop, isStrict, record);
    if (plan.Count(Action::Add, Result::Written) != 0)
        ReadBack(handset, plan, record);
    for (Deletion& deletion : plan.deletions)
        if (plan.isInterrupted || !plan.IsReadyFor(deletion) || !DeleteOne(handset, deletion, record))
            return;
}

Restoration RestorationOf(const Handset& handset, Plan plan)
{
    const bool isSaving = plan.Count(Action::Add) != 0;
    return {&MessageForm(), std::move(plan),
            [&handset](Plan& applied, bool isStrict, RunRecord& record) {
                ApplyMessages(handset, applied, isStrict, record);
            },
            0, isSaving ? "Messages come back newly saved, without time, box and read mark." : ""};
}

// What is to be saved may be there already, without its time, as an earlier run has left it; and what no PDU can carry
// is refused before anything is written.
void JudgeAdditions(Plan& plan, const Inventory& inventory)
{
    std::set<std::uint32_t> taken;
    for (const PlannedEntry& planned : plan.entries)
        if (planned.action != Action::Add && planned.index)
            taken.insert(*planned.index);
    for (PlannedEntry& planned : plan.entries) {
        if (planned.action != Action::Add)
            continue;
        const auto same = std::ranges::find_if(inventory.entries, [&](const StoredEntry& stored) {
            return MessageForm().Complete(planned.target, &stored.entry) == stored.entry &&
                   !taken.contains(stored.index);
        });
        if (same != inventory.entries.end()) {
            taken.insert(same->index);
            planned.Become(*same, same->entry, {});
        } else if (auto why = WhyNotWritable(planned.target)) {
            planned.action = Action::CannotHold;
            planned.index.reset();
            planned.from.notes.push_back(*std::move(why));
        }
    }
}

} // namespace

SavedSection MessageSection::Save(const Invocation&, const Handset& handset, const std::filesystem::path& file) const
{
    const std::vector<StoredMessage> messages = ReadMessages(handset, Boxes(std::nullopt));
    WriteText(file, MessagesJson(messages), Existing::Replace);
    return {messages.size(), 0, LossesOf(messages), 0};
}

std::optional<Restoration> MessageSection::Prepare(const Invocation&, const Handset& handset,
                                                   const std::filesystem::path& file) const
{
    return RestorationOf(handset, MessageForm().Meet(CandidatesOf(file), MessagesOf(handset), Filling::Replace));
}

std::optional<Restoration> MessageSection::Retrace(const Invocation& invocation, const Handset& handset,
                                                   std::span<const JournalStep> steps, Way way) const
{
    const Inventory inventory = MessagesOf(handset);
    Plan plan = phnctl::Retrace(steps, way, inventory.entries, invocation.Has(kForce));
    JudgeAdditions(plan, inventory);
    return RestorationOf(handset, std::move(plan));
}

SavedSection CallSection::Save(const Invocation& invocation, const Handset& handset,
                               const std::filesystem::path& file) const
{
    const std::vector<StoredCall> calls = ReadCalls(handset, CallLists(std::nullopt));
    WriteText(file, CallsJson(calls, LabelsOf(invocation.options, handset)), Existing::Replace);
    return {calls.size(), 0, LossesOf(calls), 0};
}

std::optional<Restoration> CallSection::Prepare(const Invocation&, const Handset&, const std::filesystem::path&) const
{
    return std::nullopt;
}

std::optional<Restoration> CallSection::Retrace(const Invocation&, const Handset&, std::span<const JournalStep>,
                                                Way) const
{
    return std::nullopt;
}

} // namespace phnctl
