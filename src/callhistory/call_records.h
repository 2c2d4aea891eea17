// The handset's call records, used by the call history alone. What a value means is the handset's, but for the entry's
// id, by which the next one is asked for.
#pragma once

#include "common/packed.h"
#include "common/wide_field.h"
#include "link/command.h"

using CH_RET_CNT_RES = DEV_RX_NUMBER; // the reply to a count, and to a read, which counts its entries

struct PHN_PACKED CH_ENTRY
{
    uint32_t dwEntryId;
    uint32_t dwEntry4;
    uint32_t dwEntry8;
    // From here to wEntry18 the layout of the handset's date and time.
    uint8_t byEntry12;
    uint8_t byEntry13;
    uint16_t wEntry14;
    uint8_t byEntry16;
    uint8_t byEntry17;
    uint16_t wEntry18;
    uint8_t abyReserved20[80];
    WideField<52> wszEntry100;
};
static_assert(sizeof(CH_ENTRY) == 204);
PHN_OFFSET(CH_ENTRY, dwEntryId, 0);
PHN_OFFSET(CH_ENTRY, dwEntry4, 4);
PHN_OFFSET(CH_ENTRY, dwEntry8, 8);
PHN_OFFSET(CH_ENTRY, byEntry12, 12);
PHN_OFFSET(CH_ENTRY, byEntry13, 13);
PHN_OFFSET(CH_ENTRY, wEntry14, 14);
PHN_OFFSET(CH_ENTRY, byEntry16, 16);
PHN_OFFSET(CH_ENTRY, byEntry17, 17);
PHN_OFFSET(CH_ENTRY, wEntry18, 18);
PHN_OFFSET(CH_ENTRY, abyReserved20, 20);
PHN_OFFSET(CH_ENTRY, wszEntry100, 100);
