// One lock guards the state of everything that can be waited for, the message queues, the pending serial operations and
// the service thread's tables; one condition variable wakes whoever waits for any of it. A function that takes a Lock&
// is called with the base lock held (the parameter is the proof) and never calls an exported Win32 function, which
// would take it again.
#pragma once

#include <condition_variable>
#include <mutex>

#include "clock.h"

namespace platform {

using Lock = std::unique_lock<std::mutex>;

Lock TakeBaseLock();

// Call after any change that may end somebody's wait.
void WakeWaiters(const Lock& lock);

// Waits for one wake-up, or until the clock has reached the deadline. Wakes for no reason too: call it in a loop.
void WaitForWake(Lock& lock, TimePoint deadline);

// Blocks until the predicate holds (true) or the clock has reached the deadline (false).
template <typename Predicate>
bool BlockUntil(Lock& lock, TimePoint deadline, Predicate&& holds)
{
    while (!holds()) {
        if (Now() >= deadline)
            return false;
        WaitForWake(lock, deadline);
    }
    return true;
}

// A wait that a caller asked for with a stated time-out, for as long as it lasts; a test can look for it.
class StatedWait
{
public:
#if PHN_TEST_HOOKS
    StatedWait(const Lock& lock, DWORD milliseconds, TimePoint deadline);
    ~StatedWait();
#else
    StatedWait(const Lock&, DWORD, TimePoint) {}
#endif
    StatedWait(const StatedWait&) = delete;
    StatedWait& operator=(const StatedWait&) = delete;

#if PHN_TEST_HOOKS
    // Under the base lock, those of all threads.
    static inline StatedWait* first = nullptr;

    const DWORD timeout;
    const TimePoint deadline;
    StatedWait* next = first;
#endif
};

// The same for a caller's stated time-out, which is over at the deadline.
template <typename Predicate>
bool BlockFor(Lock& lock, DWORD milliseconds, TimePoint deadline, Predicate&& holds)
{
    if (holds())
        return true;
    const StatedWait wait(lock, milliseconds, deadline);
    return BlockUntil(lock, deadline, holds);
}

} // namespace platform
