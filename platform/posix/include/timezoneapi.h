// Conversion between UTC and local time by the system's rules.
#pragma once

#include <minwinbase.h>

typedef struct _TIME_ZONE_INFORMATION
{
    LONG Bias;
    WCHAR StandardName[32];
    SYSTEMTIME StandardDate;
    LONG StandardBias;
    WCHAR DaylightName[32];
    SYSTEMTIME DaylightDate;
    LONG DaylightBias;
} TIME_ZONE_INFORMATION, *LPTIME_ZONE_INFORMATION;

PHN_PLATFORM_BEGIN
// Only the system's own zone: lpTimeZoneInformation is null.
WINBASEAPI BOOL WINAPI SystemTimeToTzSpecificLocalTime(const TIME_ZONE_INFORMATION* lpTimeZoneInformation,
                                                       const SYSTEMTIME* lpUniversalTime, LPSYSTEMTIME lpLocalTime)
    PHN_WIN32_NAME(SystemTimeToTzSpecificLocalTime);
// A local time that the clocks pass twice, or never, is daylight-saving time.
WINBASEAPI BOOL WINAPI TzSpecificLocalTimeToSystemTime(const TIME_ZONE_INFORMATION* lpTimeZoneInformation,
                                                       const SYSTEMTIME* lpLocalTime, LPSYSTEMTIME lpUniversalTime)
    PHN_WIN32_NAME(TzSpecificLocalTimeToSystemTime);
PHN_PLATFORM_END
