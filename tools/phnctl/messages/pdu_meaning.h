// What the data of a PDU's items says, each by its standard's layout. Used by the PDU reader, which finds the items.
#pragma once

#include "phnctl/messages/pdu.h"

#include <string>
#include <vector>

namespace phnctl {

// Gives the item its meaning and puts what it says into the content. An item that cannot be read keeps its bytes in
// hexadecimal, and is one problem more.
void Explain(PduItem& item, PduContent& content, std::vector<std::string>& problems);

} // namespace phnctl
