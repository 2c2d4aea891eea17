// The handset's date and time, as its message and calendar records carry it. The values are the handset's and may be
// out of range; whoever converts them decides what that means.
#pragma once

#include "common/packed.h"

struct PHN_PACKED DEV_DATE_TIME
{
    uint8_t byHour;
    uint8_t byMinute;
    uint16_t wSecond;
    uint8_t byDay;
    uint8_t byMonth;
    uint16_t wYear; // full year
};
static_assert(sizeof(DEV_DATE_TIME) == 8);
PHN_OFFSET(DEV_DATE_TIME, byHour, 0);
PHN_OFFSET(DEV_DATE_TIME, byMinute, 1);
PHN_OFFSET(DEV_DATE_TIME, wSecond, 2);
PHN_OFFSET(DEV_DATE_TIME, byDay, 4);
PHN_OFFSET(DEV_DATE_TIME, byMonth, 5);
PHN_OFFSET(DEV_DATE_TIME, wYear, 6);
