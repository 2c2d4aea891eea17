// From the vCards of any program to what a handset's contact can hold. Used by the contact kind. What a card says and a
// handset has no place for is noted, property by property.
#pragma once

#include "phnctl/plan/entry.h"

#include <string>
#include <vector>

namespace phnctl {

std::vector<Candidate> ContactsOfFile(const std::string& file, const std::string& text);

} // namespace phnctl
