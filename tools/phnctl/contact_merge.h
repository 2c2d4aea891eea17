// Brings what a card says and what the handset's contact of the same person holds into one contact, so that an import
// takes nothing off the handset. Used by the contact kind.
#pragma once

#include "phnctl/entry_form.h"

namespace phnctl {

// The card's values win over those in their places, the others stay. A number that the handset holds in another place
// moves to the card's place, unless that would cost a number; one without a type takes a place that is free.
Merged MergeContacts(const Entry& wanted, const Entry& present);

// How many numbers and addresses it has.
std::size_t CountValues(const Entry& entry);

// True when they have a number or an address in common.
bool ShareValue(const Entry& one, const Entry& other);

} // namespace phnctl
