// What a plan has to say of how a file's entry meets those of the handset and of the files. Used by the making of
// plans.
#pragma once

#include "phnctl/plan/entry_form.h"
#include "phnctl/plan/plan.h"

#include <optional>
#include <string>
#include <vector>

namespace phnctl {

void TellRepeated(Candidate& candidate);

// What only the handset has of it. Nothing when there is nothing.
void TellKept(Candidate& candidate, const EntryForm& form, const std::vector<EntryField>& kept);
void TellDisplaced(Candidate& candidate, const EntryForm& form, const Merged& merged);

// It goes into one with `other`, with which it has a number or the like in common.
void TellMerged(Candidate& candidate, const EntryForm& form, const Candidate& other);

// Another entry of that name stays beside it; these values are why they do not go into one, if there are any.
void TellNamesake(Candidate& candidate, const EntryForm& form, bool isOnHandset, const std::vector<EntryField>& noRoom);

// An entry of the handset with another name has the same number.
void TellShared(Candidate& candidate, const EntryForm& form, const Entry& other, const std::string& mark);

// It was made of an entry of the handset that has changed since.
void TellOldExport(Candidate& candidate, const EntryForm& form);

} // namespace phnctl
