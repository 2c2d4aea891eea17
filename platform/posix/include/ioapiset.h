// Overlapped operations: their results, and how pending ones are ended.
#pragma once

#include <minwinbase.h>

PHN_PLATFORM_BEGIN
WINBASEAPI BOOL WINAPI GetOverlappedResult(HANDLE hFile, LPOVERLAPPED lpOverlapped, LPDWORD lpNumberOfBytesTransferred,
                                           BOOL bWait);
WINBASEAPI BOOL WINAPI CancelIoEx(HANDLE hFile, LPOVERLAPPED lpOverlapped);
WINBASEAPI BOOL WINAPI CancelSynchronousIo(HANDLE hThread);
PHN_PLATFORM_END
