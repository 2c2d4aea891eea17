// The test hooks of the stand-in, in builds with PHN_TEST_HOOKS: a clock that a test moves, and calls that a test makes
// fail. The hooks act on the whole process. They are for tests on Linux; Windows has nothing like them.
#pragma once

#include <windows.h>

#include <vector>

#define PHN_PLATFORM_TEST __attribute__((visibility("default")))

namespace platform_test {

// Moves the clock forward, by a duration in the scale of all others. Every wait with a time-out, Sleep, timer, window
// timer and serial time-out sees the new time at once; time-outs that are now over end. A serial read still ends by its
// interval time-out only after that time, or 10 ms if it is longer, of real silence: a reply that is under way is not
// cut.
PHN_PLATFORM_TEST void AdvanceClock(DWORD milliseconds);

// Waits until as many threads are blocked in a wait or a Sleep that was begun with exactly this time-out and is not
// over yet, so that AdvanceClock finds them there. False if that has not come about within ten seconds of real time.
[[nodiscard]] PHN_PLATFORM_TEST bool AwaitBlocked(DWORD timeoutMilliseconds, unsigned threads = 1);

// The named call ("CreateEventA") fails with this error, `count` times, after it has run `skip` times more. A later
// request for the same call replaces an earlier one. Throws std::invalid_argument for a name that no call has. With
// ERROR_SUCCESS the call runs: so a test counts it.
PHN_PLATFORM_TEST void FailCall(const char* name, DWORD error, unsigned skip = 0, unsigned count = 1);

// How often a call still has to fail: 0 when the request is used up.
PHN_PLATFORM_TEST unsigned PendingFailures(const char* name);

PHN_PLATFORM_TEST void ClearFailures();

// Names the system's ANSI code page in PHNNRV_ANSI_CODE_PAGE, or in no variable (null), and has it read again: a
// process otherwise keeps the one that it had when it was first asked for.
PHN_PLATFORM_TEST void NameAnsiCodePage(const char* name);

// A thread has taken `inner` while it held `outer`: critical sections by their addresses, mutex objects by LockOf.
struct NestedLocks
{
    const void* outer;
    const void* inner;

    bool operator==(const NestedLocks&) const = default;
};

// All of the process so far, each pair once; throws std::length_error when they were too many. A lock that is made
// where another was is taken for it.
PHN_PLATFORM_TEST std::vector<NestedLocks> LockOrder();
PHN_PLATFORM_TEST const void* LockOf(HANDLE mutex);

// How often the calling thread has taken such locks and not left them.
PHN_PLATFORM_TEST std::size_t HeldLocks();

} // namespace platform_test
