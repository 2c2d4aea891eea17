// Handles of any kind: closing them, and duplicating a thread's.
#pragma once

#include <winnt.h>

#define INVALID_HANDLE_VALUE ((HANDLE)(LONG_PTR)-1)

PHN_PLATFORM_BEGIN
WINBASEAPI BOOL WINAPI CloseHandle(HANDLE hObject) PHN_WIN32_NAME(CloseHandle);
WINBASEAPI BOOL WINAPI DuplicateHandle(HANDLE hSourceProcessHandle, HANDLE hSourceHandle, HANDLE hTargetProcessHandle,
                                       LPHANDLE lpTargetHandle, DWORD dwDesiredAccess, BOOL bInheritHandle,
                                       DWORD dwOptions) PHN_WIN32_NAME(DuplicateHandle);
PHN_PLATFORM_END
