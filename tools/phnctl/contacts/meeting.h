// Which contact of the handset a card of a file means, and what an import leaves there. Used by the contact kind.
#pragma once

#include "phnctl/plan/entry_kind.h"
#include "phnctl/plan/plan.h"

#include <vector>

namespace phnctl {

// Which contacts of the handset may be the person that is typed: those of the name, and one with the same number or
// address.
std::vector<Note> NotesOnKin(const EntryKind& kind, const Entry& typed, const Inventory& inventory);

// A card means the contact of its name that has a number or an address in common with it, or that is the only one of
// that name while the card is, too. Any other card is added, and whose contact it may be is told.
Plan MeetContacts(const EntryKind& kind, std::vector<Candidate> cards, const Inventory& inventory, Filling filling);

} // namespace phnctl
