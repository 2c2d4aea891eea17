// The calling thread's last error code.
#pragma once

#include <winnt.h>

PHN_PLATFORM_BEGIN
WINBASEAPI DWORD WINAPI GetLastError(void);
WINBASEAPI void WINAPI SetLastError(DWORD dwErrCode);
PHN_PLATFORM_END
