// Brings what a card says and what the handset's contact of the same person holds into one contact, so that an import
// takes nothing off the handset. Used by the contact kind.
#pragma once

#include "phnctl/plan/entry_form.h"

namespace phnctl {

// What the contact holds stays, and what only the card has takes the places that are free. A number that both have
// moves to the card's place where nothing else stays. The card's value comes instead of the contact's where the contact
// has what the card was made of (`origin`, empty: unknown).
Merged MergeContacts(const Entry& wanted, const Entry& present, const std::string& origin);

// Its numbers and addresses.
std::vector<std::string> NumbersAndAddresses(const Entry& contact);

} // namespace phnctl
