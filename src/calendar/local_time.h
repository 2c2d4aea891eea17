// Local date-times as seconds since 1970, and back, by the system's zone and its daylight-saving rules. Used by the
// iCalendar conversion. A time is one if it lies after 1970 began and fits a signed 32-bit count, which ends in January
// 2038; everything here calls anything else -1 or false.
#pragma once

#include <cstdint>

#include "common/date_time.h"

// A date-time as a text states it.
struct SCalDate
{
    int32_t nYear = 0;
    int32_t nMonth = 0; // 1 to 12 wherever it is converted
    int32_t nDay = 0;
    int32_t nHour = 0;
    int32_t nMinute = 0;
    int32_t nSecond = 0;
    bool bUtc = false;
};

// Days, hours, minutes and seconds out of their range run over: 30 February is 2 March in most years.
int64_t LocalToSeconds(const SCalDate& Date);

// Values out of their range make no time.
int64_t LocalToSeconds(const DEV_DATE_TIME& tmLocal);

bool SecondsToLocal(int64_t nSeconds, DEV_DATE_TIME* ptmLocal);
