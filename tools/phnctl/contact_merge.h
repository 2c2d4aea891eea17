// Brings what a card says and what the handset's contact of the same person holds into one contact, so that an import
// takes nothing off the handset. Used by the contact kind.
#pragma once

#include "phnctl/entry_form.h"

namespace phnctl {

// What the contact holds stays, and what only the card has takes the places that are free. A number that both have
// moves to the card's place where nothing else stays. Where the card has precedence, its values come into their places
// and what was there goes.
Merged MergeContacts(const Entry& wanted, const Entry& present, Precedence precedence);

// Its numbers and addresses.
std::vector<std::string> NumbersAndAddresses(const Entry& contact);

} // namespace phnctl
