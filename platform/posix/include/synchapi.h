// Events, mutexes, critical sections and waits.
#pragma once

#include <minwinbase.h>

PHN_PLATFORM_BEGIN
WINBASEAPI HANDLE WINAPI CreateEventA(LPSECURITY_ATTRIBUTES lpEventAttributes, BOOL bManualReset, BOOL bInitialState,
                                      LPCSTR lpName) PHN_WIN32_NAME(CreateEventA);
WINBASEAPI BOOL WINAPI SetEvent(HANDLE hEvent) PHN_WIN32_NAME(SetEvent);
WINBASEAPI BOOL WINAPI ResetEvent(HANDLE hEvent) PHN_WIN32_NAME(ResetEvent);
WINBASEAPI HANDLE WINAPI CreateMutexA(LPSECURITY_ATTRIBUTES lpMutexAttributes, BOOL bInitialOwner, LPCSTR lpName)
    PHN_WIN32_NAME(CreateMutexA);
WINBASEAPI BOOL WINAPI ReleaseMutex(HANDLE hMutex) PHN_WIN32_NAME(ReleaseMutex);
WINBASEAPI DWORD WINAPI WaitForSingleObject(HANDLE hHandle, DWORD dwMilliseconds) PHN_WIN32_NAME(WaitForSingleObject);
WINBASEAPI DWORD WINAPI WaitForMultipleObjects(DWORD nCount, const HANDLE* lpHandles, BOOL bWaitAll,
                                               DWORD dwMilliseconds) PHN_WIN32_NAME(WaitForMultipleObjects);
WINBASEAPI void WINAPI Sleep(DWORD dwMilliseconds) PHN_WIN32_NAME(Sleep);
WINBASEAPI void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION lpCriticalSection)
    PHN_WIN32_NAME(InitializeCriticalSection);
WINBASEAPI void WINAPI EnterCriticalSection(LPCRITICAL_SECTION lpCriticalSection) PHN_WIN32_NAME(EnterCriticalSection);
WINBASEAPI void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION lpCriticalSection) PHN_WIN32_NAME(LeaveCriticalSection);
WINBASEAPI void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION lpCriticalSection)
    PHN_WIN32_NAME(DeleteCriticalSection);
PHN_PLATFORM_END
