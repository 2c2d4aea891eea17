// From contacts to a file that other programs read. Used by the contact kind.
#pragma once

#include "phnctl/plan/entry_kind.h"

#include <span>
#include <string>

namespace phnctl {

// Version 3.0, escaped, lines folded at 75 bytes. What the standard has no property for keeps the library's name, so
// that nothing is lost on the way back.
std::string FileOfContacts(std::span<const StoredEntry> contacts);

} // namespace phnctl
