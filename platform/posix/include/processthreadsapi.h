// Threads. The handle of a thread is signalled once it has ended.
#pragma once

#include <minwinbase.h>

typedef DWORD(WINAPI* LPTHREAD_START_ROUTINE)(LPVOID lpThreadParameter);

PHN_PLATFORM_BEGIN
WINBASEAPI HANDLE WINAPI CreateThread(LPSECURITY_ATTRIBUTES lpThreadAttributes, SIZE_T dwStackSize,
                                      LPTHREAD_START_ROUTINE lpStartAddress, LPVOID lpParameter, DWORD dwCreationFlags,
                                      LPDWORD lpThreadId);
WINBASEAPI DECLSPEC_NORETURN void WINAPI ExitThread(DWORD dwExitCode);
WINBASEAPI BOOL WINAPI GetExitCodeThread(HANDLE hThread, LPDWORD lpExitCode);
WINBASEAPI HANDLE WINAPI OpenThread(DWORD dwDesiredAccess, BOOL bInheritHandle, DWORD dwThreadId);
WINBASEAPI HANDLE WINAPI GetCurrentProcess(void);
WINBASEAPI DWORD WINAPI GetCurrentProcessId(void);
WINBASEAPI HANDLE WINAPI GetCurrentThread(void);
WINBASEAPI DWORD WINAPI GetCurrentThreadId(void);
PHN_PLATFORM_END
