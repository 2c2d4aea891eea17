// The handset's answer to what has changed, with its flags. Used by the callback service alone; the layout is the
// handset's.
#pragma once

#include "link/command.h"

inline constexpr WORD kNetworkChanged = 0x000F; // any of them
inline constexpr WORD kConnectionChanged = 0x0010;
inline constexpr WORD kStateChanged = 0x0020;
inline constexpr WORD kBatteryChanged = 0x0040;
inline constexpr WORD kMessagesChanged = 0x0080;
inline constexpr WORD kActivationChanged = 0x0100;

struct PHN_PACKED CB_RET_FLAGS_RES
{
    DEV_RX_HEADER rcRxHeader;
    uint16_t wFlags;
};
static_assert(sizeof(CB_RET_FLAGS_RES) == 10);
PHN_OFFSET(CB_RET_FLAGS_RES, rcRxHeader, 0);
PHN_OFFSET(CB_RET_FLAGS_RES, wFlags, 8);
