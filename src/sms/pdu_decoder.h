// Reads the PDU that a host wants sent or saved. Only a small, fixed part of TIA/EIA-637 is understood: digits-only
// addresses and call-back numbers, 7-bit ASCII text, priority and reply option. The bytes are the host's and may be
// anything: nothing is read beyond them, and a PDU of which such an item runs past the end is rejected, so that no
// message is sent without it. An item that is not read ends the search where it runs past the end.
#pragma once

#include <span>

#include "phnnrv.h"
#include "sms/message_records.h"

// Where the items of a search begin: from uStart on and before uEnd. An item that begins there belongs to the search
// even if it runs past uEnd, as long as it ends with the PDU.
struct SItemRange
{
    std::span<const uint8_t> Pdu;
    size_t uStart;
    size_t uEnd;
};

enum EItem
{
    eItemAbsent,
    eItemCut, // it runs past the PDU's end
    eItemWhole
};

// The first item with the identifier, and its data; none if it is not whole.
EItem FindIS637Parameter(const SItemRange& Items, uint8_t byID, std::span<const uint8_t>* pData);

// Fills a fresh message from the PDU at pIS637Data, uSizeofData bytes. Date and time stay zero; without Bearer Data
// only the address is filled. False, with a line for all but a missing PDU, if the PDU is rejected:
// PHN_ERROR_INVALID_PARAMETER (no PDU), PHN_ERROR_PDU_NOT_DECODABLE (not point-to-point, or its text),
// PHN_ERROR_PDU_NO_DESTINATION, PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE (address or call-back number).
bool IS637ToText(const PHN_SMS_MESSAGE* pHostMessage, SMS_MESSAGE* pMessage, PHN_ERROR* pError);
