// Timers, of a window or of a thread, each of which is a message. Only their own thread starts and stops them.
#include <algorithm>

#include "base/win32_call.h"
#include "messages/message_queue.h"

using namespace platform;

UINT_PTR WINAPI SetTimer(HWND hWnd, UINT_PTR nIDEvent, UINT uElapse, TIMERPROC lpTimerFunc)
{
    return Win32Call(Call::SetTimer, UINT_PTR{0}, [&] {
        if (lpTimerFunc)
            throw Win32Error{ERROR_NOT_SUPPORTED};
        static UINT_PTR lastThreadTimer = 0;
        const Lock lock = TakeBaseLock();
        const UINT_PTR id = hWnd ? nIDEvent : ++lastThreadTimer;
        const auto queue = hWnd ? OwnWindowOf(lock, hWnd)->queue : MessageQueue::Current(lock);
        const DWORD elapse = std::clamp<DWORD>(uElapse, USER_TIMER_MINIMUM, USER_TIMER_MAXIMUM);
        queue->StartTimer(lock, hWnd, id, elapse);
        return id ? id : UINT_PTR{1};
    });
}

BOOL WINAPI KillTimer(HWND hWnd, UINT_PTR uIDEvent)
{
    return Win32Call(Call::KillTimer, FALSE, [&] {
        const Lock lock = TakeBaseLock();
        const auto queue = hWnd ? OwnWindowOf(lock, hWnd)->queue : MessageQueue::Current(lock);
        if (!queue->StopTimer(lock, hWnd, uIDEvent))
            throw Win32Error{ERROR_INVALID_PARAMETER};
        return TRUE;
    });
}
