// Names that differ in capitals and spaces only are one name. Used where contacts are found by their names.
#pragma once

#include <string>
#include <string_view>

namespace phnctl {

// The same for all spellings of a name: small Latin, Greek and Cyrillic letters, and one space between words.
std::string NameKey(std::string_view name);

} // namespace phnctl
