// One lock guards the state of everything that can be waited for, the message queues, the pending serial operations and
// the service thread's tables. A blocked thread says what it is blocked for, and a change of one thing wakes only those
// who are blocked for that one. A function that takes a Lock& is called with the base lock held (the parameter is the
// proof) and never calls an exported Win32 function, which would take it again.
#pragma once

#include <poll.h>

#include <condition_variable>
#include <mutex>
#include <span>

#include "base/clock.h"

namespace platform {

using Lock = std::unique_lock<std::mutex>;

Lock TakeBaseLock();

// What a thread can be blocked for, by its address.
using Source = const void*;

// Call after any change of the source that may end somebody's wait for it.
void WakeWaiters(const Lock& lock, Source source);

// Call when the clock was moved: every time-out is looked at again.
void WakeAllWaiters(const Lock& lock);

// Waits until one of the sources has changed, or the clock has reached the deadline. Wakes for no reason too: call it
// in a loop.
void WaitForWake(Lock& lock, std::span<const Source> sources, TimePoint deadline);

// The same for a thread that looks at a descriptor itself meanwhile: ends also when that has what is asked for. The
// bell (an eventfd) is for those who wake it.
void WaitForWakeOr(Lock& lock, std::span<const Source> sources, TimePoint deadline, pollfd looked, int bell);

// Ends such a wait; to be called under the base lock.
void Ring(int bell);

// Blocks until the predicate holds, which a change of the source may bring about.
template <typename Predicate>
void BlockUntil(Lock& lock, Source source, Predicate&& holds)
{
    while (!holds())
        WaitForWake(lock, {&source, 1}, kNever);
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

} // namespace platform
