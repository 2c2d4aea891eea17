// What every command does that adds an entry which a person has typed.
#include "phnctl/cli/print.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/entries/parts.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/run_record.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

namespace {

// Of a file's entry the rest is stored, and what is missing is told; here it can be typed anew.
void RequireAllOfIt(const EntryKind& kind, const Candidate& typed)
{
    for (const Note& note : typed.notes)
        if (!typed.fits || note.code != "number-rewritten")
            throw Failure(kUsage, fmt::format("{}{}. Nothing was changed.",
                                              note.property.empty() ? "" : kind.Label(note.property) + ": ",
                                              Printable(note.text)));
}

} // namespace

int AddTyped(const Invocation& invocation, const EntryKind& kind, Candidate typed, const NotesOnTyped& notes)
{
    RequireAllOfIt(kind, typed);
    const bool isInPlan = invocation.Has(kDryRun) && host::TerminalWidth(stdout) != 0;
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        if (notes)
            std::ranges::move(notes(typed.entry, Glance(invocation, handset, kind)), std::back_inserter(typed.notes));
        status = Store(invocation, handset, kind, typed, std::nullopt, "add");
        if (!invocation.options.json && !isInPlan)
            Print(invocation.options, Describe(kind, typed.entry, kind.Details(handset, typed.entry)));
    });
    return status;
}

std::vector<CommandOption> AddOptions()
{
    return {{kDryRun, "", "Show what would be stored and write nothing"},
            {kNoCopy, "", "Keep nothing to take this back with"}};
}

} // namespace phnctl
