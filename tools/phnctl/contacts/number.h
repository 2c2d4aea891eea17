// Telephone numbers as people write them, and what a handset dials. Used by the contact fitter.
#pragma once

#include "phnctl/plan/entry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

struct ReadNumber
{
    std::optional<std::string> number; // none: there is a character that means something else
    std::vector<Note> notes{};         // where it is not what is written; code and text alone
};

// The dialable characters: digits, #, *, +, p for a pause and w for a wait. An extension ("555 0100 ext. 22",
// "5550100x22",
// ";ext=22") is dialled after a pause. A "(0)" that is dialled inside the country only goes, and so does the other
// ending in "5550100/01".
ReadNumber NumberOf(const std::string& text);

} // namespace phnctl
