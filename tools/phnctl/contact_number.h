// Telephone numbers as people write them, and what a handset dials. Used by the contact fitter.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace phnctl {

struct WrittenNumber
{
    std::string number;
    std::string extension; // digits; empty: none
};

// "555 0100 ext. 22", "5550100x22" and "5550100;ext=22" in their two halves.
WrittenNumber SplitExtension(const std::string& text);

// The dialable characters: digits, #, *, +, p for a pause and w for a wait. Nothing when there is a character that
// means something else.
std::optional<std::string> Dialable(std::string_view text);

} // namespace phnctl
