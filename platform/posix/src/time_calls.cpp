#include <sched.h>

#include "base_lock.h"

using namespace platform;

void WINAPI Sleep(DWORD dwMilliseconds)
{
    if (dwMilliseconds == 0) {
        sched_yield();
        return;
    }
    Lock lock = TakeBaseLock();
    BlockFor(lock, dwMilliseconds, After(dwMilliseconds), [] { return false; });
}

ULONGLONG WINAPI GetTickCount64()
{
    const auto sinceStart = std::chrono::duration_cast<std::chrono::milliseconds>(Now().time_since_epoch());
    return static_cast<ULONGLONG>(sinceStart.count());
}
