// How a card says which contact it was made of: by a UID that stands for the name, the numbers and the addresses that
// the contact had, each by itself. Whoever changes a value of the card means that of the contact, as long as the
// contact has it; indexes do not last, and handsets keep no ids. Used by the reader and the writer of cards and by the
// contact kind.
#pragma once

#include "phnctl/plan/entry.h"

#include <string>
#include <string_view>

namespace phnctl {

// The contact in the form in which contacts are compared.
std::string OriginOf(const Entry& contact);

// True for a UID that OriginOf gave.
bool IsOrigin(std::string_view uid);

// Did the contact that a UID stands for have this value in this place? An empty UID stands for none.
bool HadValue(std::string_view uid, const EntryField& field);

} // namespace phnctl
