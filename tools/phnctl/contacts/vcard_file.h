// Takes a file apart into the vCards that it holds, of version 2.1, 3.0 or 4.0. Used by the contacts' import; what the
// properties mean to a handset is card_reader's. A card inside a card (an AGENT of version 2.1) is passed over.
#pragma once

#include "phnctl/text/content_line.h"

#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

struct VCard
{
    std::size_t line = 0;                // of its BEGIN
    std::vector<ContentLine> properties; // without BEGIN, VERSION and END; a line without a colon has no name
    std::string problem;                 // empty: the card is whole
    std::size_t problemLine = 0;
};

// Text that belongs to no card comes as a card with a problem, so that nothing of a file is passed over in silence.
std::vector<VCard> ReadVCards(std::string_view text);

} // namespace phnctl
