// Telephone numbers as people write them, and what a handset dials. Used by the contact fitter.
#pragma once

#include <optional>
#include <string>

namespace phnctl {

// The dialable characters: digits, #, *, +, p for a pause and w for a wait. An extension ("555 0100 ext. 22",
// "5550100x22", ";ext=22") is dialled after a pause. A "(0)" that is dialled inside the country only goes, and so does
// the other ending in "5550100/01". Nothing where a character means something else.
std::optional<std::string> NumberOf(const std::string& text);

// True when such a number says more or less than the digits that were written, so that a person should look at it.
bool IsRewritten(const std::string& text, const std::string& number);

} // namespace phnctl
