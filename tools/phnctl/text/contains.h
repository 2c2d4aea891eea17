// Whether people find a text in another one: capitals and accents aside, as the system's collation has it. Used by the
// commands that find entries. One implementation per system, chosen by CMake.
#pragma once

#include <string>

namespace phnctl {

// Both in UTF-8. Nothing is nowhere.
bool Contains(const std::string& text, const std::string& wanted);

} // namespace phnctl
