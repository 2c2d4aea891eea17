// The time of day, the milliseconds since the start, and the system's version.
#pragma once

#include <minwinbase.h>

PHN_PLATFORM_BEGIN
WINBASEAPI void WINAPI GetLocalTime(LPSYSTEMTIME lpSystemTime) PHN_WIN32_NAME(GetLocalTime);
WINBASEAPI ULONGLONG WINAPI GetTickCount64(void) PHN_WIN32_NAME(GetTickCount64);
WINBASEAPI BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA lpVersionInformation) PHN_WIN32_NAME(GetVersionExA);
PHN_PLATFORM_END
