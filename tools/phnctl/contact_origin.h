// How a card says which contact it was made of: by a UID that stands for all that the contact held. As long as the
// handset's contact is what it was, whoever changes the card means that contact; indexes do not last, and handsets keep
// no ids. Used by the reader and the writer of cards and by the contact kind.
#pragma once

#include "phnctl/entry.h"

#include <string>

namespace phnctl {

// The contact in the form in which contacts are compared.
std::string OriginOf(const Entry& contact);

// True for a UID that OriginOf gave.
bool IsOrigin(const std::string& uid);

} // namespace phnctl
