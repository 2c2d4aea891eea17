// The calling thread's last error code.
#pragma once

#include <winnt.h>

PHN_PLATFORM_BEGIN
WINBASEAPI DWORD WINAPI GetLastError(void) PHN_WIN32_NAME(GetLastError);
WINBASEAPI void WINAPI SetLastError(DWORD dwErrCode) PHN_WIN32_NAME(SetLastError);
PHN_PLATFORM_END
