#include "base/win32_call.h"
#include "threads/waitable.h"

using namespace platform;

DWORD WINAPI WaitForSingleObject(HANDLE hHandle, DWORD dwMilliseconds)
{
    return Win32Call(Call::WaitForSingleObject, WAIT_FAILED, [&] {
        const WaitableList objects(&hHandle, 1);
        Lock lock = TakeBaseLock();
        return WaitFor(lock, objects, false, dwMilliseconds, AfterSilence(dwMilliseconds));
    });
}

DWORD WINAPI WaitForMultipleObjects(DWORD nCount, const HANDLE* lpHandles, BOOL bWaitAll, DWORD dwMilliseconds)
{
    return Win32Call(Call::WaitForMultipleObjects, WAIT_FAILED, [&] {
        if (nCount == 0 || nCount > MAXIMUM_WAIT_OBJECTS)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        const WaitableList objects(lpHandles, nCount);
        Lock lock = TakeBaseLock();
        return WaitFor(lock, objects, bWaitAll != FALSE, dwMilliseconds, AfterSilence(dwMilliseconds));
    });
}

BOOL WINAPI CloseHandle(HANDLE hObject)
{
    return Win32Call(Call::CloseHandle, FALSE, [&] {
        FreeHandle(hObject);
        return TRUE;
    });
}

// Within this process only; access rights and inheritance have no meaning here.
BOOL WINAPI DuplicateHandle(HANDLE hSourceProcessHandle, HANDLE hSourceHandle, HANDLE hTargetProcessHandle,
                            HANDLE* lpTargetHandle, DWORD, BOOL, DWORD dwOptions)
{
    return Win32Call(Call::DuplicateHandle, FALSE, [&] {
        if (hSourceProcessHandle != GetCurrentProcess() || hTargetProcessHandle != GetCurrentProcess())
            throw Win32Error{ERROR_INVALID_HANDLE};
        if (dwOptions & ~DWORD{DUPLICATE_SAME_ACCESS})
            throw Win32Error{ERROR_NOT_SUPPORTED};
        *lpTargetHandle = NewHandle(ObjectOf(hSourceHandle));
        return TRUE;
    });
}
