#include "threads/event.h"

#include "base/recycled.h"
#include "base/win32_call.h"

using namespace platform;

// Names, which would share the object between processes, are not offered.
HANDLE WINAPI CreateEventA(LPSECURITY_ATTRIBUTES, BOOL bManualReset, BOOL bInitialState, LPCSTR lpName)
{
    return Win32Call(Call::CreateEventA, HANDLE{}, [&] {
        if (lpName)
            throw Win32Error{ERROR_NOT_SUPPORTED};
        return NewHandle(MakeRecycled<Event>(bManualReset != FALSE, bInitialState != FALSE));
    });
}

BOOL WINAPI SetEvent(HANDLE hEvent)
{
    return Win32Call(Call::SetEvent, FALSE, [&] {
        const auto event = FromHandle<Event>(hEvent);
        event->Set(TakeBaseLock());
        return TRUE;
    });
}

BOOL WINAPI ResetEvent(HANDLE hEvent)
{
    return Win32Call(Call::ResetEvent, FALSE, [&] {
        const auto event = FromHandle<Event>(hEvent);
        event->Reset(TakeBaseLock());
        return TRUE;
    });
}
