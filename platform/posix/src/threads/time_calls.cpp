#include <sched.h>

#include "base/base_lock.h"

using namespace platform;

void WINAPI Sleep(DWORD dwMilliseconds)
{
    if (dwMilliseconds == 0) {
        sched_yield();
        return;
    }
    Lock lock = TakeBaseLock();
    const TimePoint end = After(dwMilliseconds);
    const StatedWait wait(lock, dwMilliseconds, end);
    while (Now() < end)
        WaitForWake(lock, {}, end);
}

ULONGLONG WINAPI GetTickCount64()
{
    return TickCount();
}
