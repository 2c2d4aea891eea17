// Threads. The handle of a thread is signalled once it has ended.
#pragma once

#include <minwinbase.h>

typedef DWORD(WINAPI* LPTHREAD_START_ROUTINE)(LPVOID lpThreadParameter);

PHN_PLATFORM_BEGIN
WINBASEAPI HANDLE WINAPI CreateThread(LPSECURITY_ATTRIBUTES lpThreadAttributes, SIZE_T dwStackSize,
                                      LPTHREAD_START_ROUTINE lpStartAddress, LPVOID lpParameter, DWORD dwCreationFlags,
                                      LPDWORD lpThreadId) PHN_WIN32_NAME(CreateThread);
WINBASEAPI DECLSPEC_NORETURN void WINAPI ExitThread(DWORD dwExitCode) PHN_WIN32_NAME(ExitThread);
WINBASEAPI HANDLE WINAPI GetCurrentProcess(void) PHN_WIN32_NAME(GetCurrentProcess);
WINBASEAPI DWORD WINAPI GetCurrentProcessId(void) PHN_WIN32_NAME(GetCurrentProcessId);
WINBASEAPI HANDLE WINAPI GetCurrentThread(void) PHN_WIN32_NAME(GetCurrentThread);
WINBASEAPI DWORD WINAPI GetCurrentThreadId(void) PHN_WIN32_NAME(GetCurrentThreadId);
PHN_PLATFORM_END
