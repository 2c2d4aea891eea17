// The time of day, the milliseconds since the start, and the system's version.
#pragma once

#include <minwinbase.h>

PHN_PLATFORM_BEGIN
WINBASEAPI void WINAPI GetLocalTime(LPSYSTEMTIME lpSystemTime);
WINBASEAPI DWORD WINAPI GetTickCount(void);
WINBASEAPI ULONGLONG WINAPI GetTickCount64(void);
WINBASEAPI BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA lpVersionInformation);
PHN_PLATFORM_END
