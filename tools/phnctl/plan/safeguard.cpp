#include "phnctl/plan/safeguard.h"

#include "phnctl/cli/print.h"
#include "phnctl/plan/run_record.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>

namespace phnctl {

namespace {

constexpr const char* kYes = "--yes";

} // namespace

CommandOption ConfirmOption()
{
    return {kYes, "", "Do not ask"};
}

CommandOption AcceptLossOption()
{
    return {kAcceptLoss, "", "Go on with texts that have lost characters to the code page"};
}

void RequireWholeCopy(const Invocation& invocation, const EntryKind& kind, std::span<const StoredEntry> entries)
{
    if (invocation.Has(kAcceptLoss) || invocation.Has(kNoCopy))
        return;
    if (const std::size_t garbled = TellGarbled(kind, entries); garbled != 0)
        throw Failure(kRefused,
                      fmt::format("text-lost: a copy of {} would not be whole. Nothing was changed.",
                                  Counted(garbled, kind.One(), kind.Many())),
                      fmt::format("{} goes on all the same.", kAcceptLoss));
}

void SpareGarbled(const EntryKind& kind, Plan& plan, const Inventory& inventory)
{
    std::set<std::uint32_t> garbled;
    for (const StoredEntry& stored : inventory.entries)
        if (kind.LooksGarbled(stored.entry))
            garbled.insert(stored.index);
    for (PlannedEntry& planned : plan.entries) {
        if (planned.action != Action::Change || !planned.index || !garbled.contains(*planned.index))
            continue;
        planned.action = Action::CannotHold;
        planned.from.notes.push_back(
            {"text-lost", "", planned.from.line,
             fmt::format("the handset's {} may have characters that have no place in the code page, and '?' would be "
                         "written over them; {} does so",
                         kind.One(), kAcceptLoss)});
    }
}

void TellDoubtfulTexts(const EntryKind& kind, Plan& plan, const Inventory& inventory)
{
    for (PlannedEntry& planned : plan.entries) {
        const auto stored = std::ranges::find_if(
            inventory.entries, [&](const StoredEntry& entry) { return entry.index == planned.index; });
        if (planned.action != Action::Change || stored == inventory.entries.end())
            continue;
        std::set<std::string> properties;
        for (const auto& [property, value] : stored->entry.fields) {
            if (HasControls(value))
                planned.Tell("control-characters",
                             fmt::format("the handset's {}, '{}': {}", kind.Label(property), value, kControlsReplaced));
            if (!properties.insert(property).second)
                planned.Tell("held-twice", fmt::format("the handset's {} has {} twice: a line end in a text of it may "
                                                       "pass for another of its values",
                                                       kind.One(), kind.Label(property)));
        }
    }
}

void TellDeleted(const Invocation& invocation, std::size_t count, const std::string& one, const std::string& many)
{
    PrintDone(invocation.options,
              count == 0 ? fmt::format("There are no {} to delete.", many) : Counted(count, one, many) + " deleted.",
              {{{"", "", {{"deleted", "", count}}}}});
}

void Confirm(const Invocation& invocation, const std::string& question)
{
    if (invocation.Has(kYes))
        return;
    const auto answer = host::Ask(question + " [y/N] ");
    if (!answer)
        throw Failure(kUsage,
                      fmt::format("nobody can be asked \"{}\" on this input; say --yes to do it. Nothing was changed.",
                                  question));
    if (*answer != "y" && *answer != "Y" && *answer != "yes")
        throw Failure(kRefused, "nothing was changed.");
}

} // namespace phnctl
