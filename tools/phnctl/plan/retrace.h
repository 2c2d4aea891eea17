// The plan that takes a run back, or finishes it, from its journal and from what the handset holds now. Both are the
// same: of each step one side is wanted, and the other is what the handset may still have. Used by undo and resume.
#pragma once

#include "phnctl/plan/journal.h"
#include "phnctl/plan/plan.h"

#include <span>

namespace phnctl {

enum class Way
{
    Back,    // to what was there before
    Forward, // to what the run wanted
};

// What has become something else since stays, with the note "changed-since"; with `force` a changed entry gets its
// wanted values all the same. An entry that was added and cannot be found any more is left, as its index says nothing
// in another run. `stored` is in the form in which entries are compared; each of them stands for one step at most.
Plan Retrace(std::span<const JournalStep> steps, Way way, std::span<const StoredEntry> stored, bool force);

} // namespace phnctl
