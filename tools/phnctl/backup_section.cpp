#include "phnctl/backup_section.h"

#include "phnctl/entry_commands.h"
#include "phnctl/failure.h"
#include "phnctl/inventory.h"
#include "phnctl/plan.h"
#include "phnctl/safeguard.h"
#include "phnctl/text_file.h"

#include <algorithm>
#include <fmt/format.h>

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

void DeleteOthers(const Invocation& invocation, const Handset& handset, const EntryKind& kind,
                  const std::vector<StoredEntry>& others)
{
    Confirm(invocation, fmt::format("Delete {} {} that the backup does not hold?", others.size(), kind.Many()));
    KeepCopy(invocation, kind, "restore", others);
    for (const StoredEntry& other : others)
        kind.Delete(handset, other.index);
    fmt::print(stderr, "{} {} deleted.\n", others.size(), kind.Many());
}

} // namespace

SavedSection EntrySection::Save(const Handset& handset, const std::filesystem::path& file) const
{
    const Inventory inventory = TakeInventory(handset, m_kind, IndexRange());
    TellUnread(m_kind, inventory);
    TellGarbled(m_kind, inventory);
    WriteText(file, m_kind.Format(inventory.entries), Existing::Replace);
    return {inventory.entries.size(), inventory.unread.size()};
}

int EntrySection::Restore(const Invocation& invocation, const Handset& handset, const std::filesystem::path& file) const
{
    auto candidates = ReadCandidates(m_kind, {TextOf(file)});
    const Inventory inventory = TakeInventory(handset, m_kind, IndexRange());
    TellUnread(m_kind, inventory);
    Plan plan = MakePlan(m_kind, std::move(candidates), inventory);
    const std::vector<StoredEntry> others = OthersOf(plan, inventory);
    const int status = CarryOut(invocation, handset, m_kind, plan, inventory);
    if (others.empty())
        return status;
    if (!invocation.Has(kDeleteOthers))
        fmt::print(stderr, "{} {} of the handset are not in the backup. They stay; {} deletes them.\n", others.size(),
                   m_kind.Many(), kDeleteOthers);
    else if (!plan.isApplied)
        fmt::print(stderr, "{} {} of the handset are not in the backup and would be deleted.\n", others.size(),
                   m_kind.Many());
    else if (status == kDone)
        DeleteOthers(invocation, handset, m_kind, others);
    else
        fmt::print(stderr, "Nothing was deleted, as not all of the backup is on the handset.\n");
    return status;
}

} // namespace phnctl
