// From the vCards of any program to what a handset's contact can hold, and from contacts to a file that other programs
// read. Used by the contact kind. What a card says and a handset has no place for is noted, property by property.
#pragma once

#include "phnctl/entry_kind.h"
#include "phnctl/vcard_file.h"

#include <span>
#include <string>
#include <vector>

namespace phnctl {

std::vector<Candidate> ContactsOfFile(const std::string& file, const std::string& text);

// Version 3.0, escaped, lines folded at 75 bytes. Values keep the property names of the library, so that nothing is
// lost on the way back.
std::string FileOfContacts(std::span<const StoredEntry> contacts);

} // namespace phnctl
