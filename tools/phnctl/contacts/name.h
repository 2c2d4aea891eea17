// The one name that a handset's contact gets from the two that a card has: FN, as people read it, and N, in parts. Used
// by the card reader.
#pragma once

#include <string>
#include <vector>

namespace phnctl {

struct CardName
{
    std::string text;
    bool isFromParts = false;
    std::string leftOut; // parts that are not in the text
};

// FN where it says all that N says, or something of its own ("Mum"). The parts where FN is empty, lacks some of them,
// or begins with the family name and a comma; family name first where FN has it so, or the script of the name does.
// `parts` are those of N: family, given, additional, prefix, suffix.
CardName NameOfCard(const std::string& formatted, const std::vector<std::string>& parts);

} // namespace phnctl
