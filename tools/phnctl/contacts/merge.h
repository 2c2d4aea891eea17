// Brings what a card says and what the handset's contact of the same person holds into one contact, so that an import
// takes nothing off the handset. Used where contacts meet.
#pragma once

#include "phnctl/plan/entry.h"

#include <string>
#include <vector>

namespace phnctl {

struct Displaced
{
    EntryField wanted;
    std::string place; // the property under which it went
};

struct Merged
{
    Entry entry;
    std::vector<EntryField> kept{};     // what only the handset's holds
    std::vector<Displaced> displaced{}; // what only the card holds, in another place than it asked for
    std::vector<EntryField> leftOut{};  // what only the card holds, and no place is left for
};

Merged MergeContacts(const Candidate& card, const Entry& present);

} // namespace phnctl
