// Carries out a plan: writes each entry, reads it back and compares. Used by every command that writes entries.
#pragma once

#include "phnctl/plan/plan.h"
#include "phnctl/plan/run_record.h"

namespace phnctl {

// Leaves in the plan what came of each entry. An entry that fails does not stop the rest, unless `strict`; one that
// finds the handset full stops the other additions; the loss of the handset stops all, and so does Ctrl-C, after the
// entry in hand. New entries go where the inventory found nothing, one place after the other; each place is looked at
// again first, as the handset may have put another entry there. What the plan deletes goes last, and only when all the
// rest is on the handset. The record knows of each step before it is taken.
void Apply(const Handset& handset, const EntryKind& kind, Plan& plan, const Inventory& inventory, bool strict,
           RunRecord& record);

} // namespace phnctl
