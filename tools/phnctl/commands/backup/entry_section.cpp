#include "phnctl/commands/backup/entry_section.h"

#include "phnctl/commands/entries/commands.h"
#include "phnctl/plan/apply.h"
#include "phnctl/plan/inventory.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/text_file.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace phnctl {

namespace {

// What the handset holds and no entry of the plan stands for.
std::vector<StoredEntry> OthersOf(const Plan& plan, const Inventory& inventory)
{
    std::vector<StoredEntry> others;
    std::copy_if(inventory.entries.begin(), inventory.entries.end(), std::back_inserter(others),
                 [&](const StoredEntry& stored) {
                     return std::none_of(plan.entries.begin(), plan.entries.end(),
                                         [&](const PlannedEntry& planned) { return planned.index == stored.index; });
                 });
    return others;
}

auto Applying(const Handset& handset, const EntryKind& kind, std::shared_ptr<const Inventory> inventory)
{
    return [&handset, &kind, inventory = std::move(inventory)](Plan& plan, bool isStrict, RunRecord& record) {
        record.KeepCopy(kind, EndangeredBy(plan, *inventory));
        Apply(handset, kind, plan, *inventory, isStrict, record);
    };
}

} // namespace

SavedSection EntrySection::Save(const Invocation&, const Handset& handset, const std::filesystem::path& file) const
{
    const Inventory inventory = TakeInventory(handset, m_kind, IndexRange());
    TellUnread(m_kind, inventory);
    const std::size_t textLost = TellGarbled(m_kind, inventory.entries);
    WriteText(file, m_kind.Format(inventory.entries), Existing::Replace);
    return {inventory.entries.size(), inventory.unread.size(), LossesOf(m_kind, inventory.entries), textLost};
}

std::optional<Restoration> EntrySection::Prepare(const Invocation& invocation, const Handset& handset,
                                                 const std::filesystem::path& file) const
{
    auto candidates = ReadCandidates(m_kind, {TextOf(file)}, invocation.Has(kAcceptLoss));
    const auto inventory = std::make_shared<Inventory>(TakeInventory(handset, m_kind, IndexRange()));
    TellUnread(m_kind, *inventory);
    Restoration restoration{&m_kind, m_kind.Meet(std::move(candidates), *inventory, Filling::Replace), {}};
    std::vector<StoredEntry> others = OthersOf(restoration.plan, *inventory);
    LimitToRoom(restoration.plan, inventory->empty.size());
    if (!invocation.Has(kAcceptLoss))
        SpareGarbled(m_kind, restoration.plan, *inventory);
    if (invocation.Has(kDeleteOthers))
        RequireWholeCopy(invocation, m_kind, others);
    if (invocation.Has(kDeleteOthers))
        for (StoredEntry& other : others)
            restoration.plan.deletions.push_back({std::move(other)});
    else
        restoration.others = others.size();
    TellDoubtfulTexts(m_kind, restoration.plan, *inventory);
    restoration.apply = Applying(handset, m_kind, inventory);
    return restoration;
}

std::optional<Restoration> EntrySection::Retrace(const Invocation& invocation, const Handset& handset,
                                                 std::span<const JournalStep> steps, Way way) const
{
    const auto inventory = std::make_shared<Inventory>(TakeInventory(handset, m_kind, IndexRange()));
    TellUnread(m_kind, *inventory);
    Plan plan = phnctl::Retrace(steps, way, StorableOf(m_kind, *inventory), invocation.Has(kForce));
    TellDoubtfulTexts(m_kind, plan, *inventory);
    return Restoration{&m_kind, std::move(plan), Applying(handset, m_kind, inventory)};
}

} // namespace phnctl
