// Which of a contact's places each number and each address gets. The same for a card that is alone and for one that
// goes into a contact of the handset, so that both fill the places by one rule.
#pragma once

#include "phnctl/plan/entry.h"

#include <string>
#include <vector>

namespace phnctl {

struct Placed
{
    std::string place;  // the property under which it goes; empty: no place is left for it
    bool isNew = false; // the contact does not have it already
};

struct Placement
{
    std::vector<EntryField> values; // of the contact, in the order of its places, then in that of the new ones
    std::vector<EntryField> kept;   // of these, what only the contact has
    std::vector<Placed> placed;     // each of the wanted values
};

// Numbers and addresses, wanted under their properties or, as kAnyNumber, anywhere. What the contact holds stays, and
// what it does not have takes the places that are free. A number that both have moves to the wanted place where nothing
// else stays.
Placement Place(const std::vector<EntryField>& wanted, const std::vector<EntryField>& present);

} // namespace phnctl
