// Overlapped operations: their results, and how pending ones are ended.
#pragma once

#include <minwinbase.h>

PHN_PLATFORM_BEGIN
WINBASEAPI BOOL WINAPI GetOverlappedResult(HANDLE hFile, LPOVERLAPPED lpOverlapped, LPDWORD lpNumberOfBytesTransferred,
                                           BOOL bWait) PHN_WIN32_NAME(GetOverlappedResult);
WINBASEAPI BOOL WINAPI CancelIoEx(HANDLE hFile, LPOVERLAPPED lpOverlapped) PHN_WIN32_NAME(CancelIoEx);
WINBASEAPI BOOL WINAPI CancelSynchronousIo(HANDLE hThread) PHN_WIN32_NAME(CancelSynchronousIo);
PHN_PLATFORM_END
