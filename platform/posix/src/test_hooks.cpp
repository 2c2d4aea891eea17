#if PHN_TEST_HOOKS

#include "phn_platform_test.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/base_lock.h"
#include "base/faults.h"
#include "locale/code_page.h"
#include "threads/service_thread.h"

namespace platform {
namespace {

constexpr std::array<std::string_view, kCallCount> kCallNames = {
#define PHN_ROW(name) #name,
    PHN_WIN32_CALLS(PHN_ROW)
#undef PHN_ROW
};

struct Failure
{
    DWORD error = ERROR_SUCCESS;
    unsigned skip = 0;
    unsigned count = 0; // how often it is still to happen
};

constinit std::mutex failuresMutex;
constinit std::array<Failure, kCallCount> failures{};
std::atomic<bool> anyFailure = false;

Failure& FailureOf(const char* name)
{
    const auto* const found = std::ranges::find(kCallNames, name);
    if (found == kCallNames.end())
        throw std::invalid_argument(std::string("no such call: ") + name);
    return failures[static_cast<std::size_t>(found - kCallNames.begin())];
}

} // namespace

DWORD InjectedError(Call call) noexcept
{
    if (!anyFailure.load(std::memory_order_relaxed))
        return ERROR_SUCCESS;
    const std::lock_guard guard(failuresMutex);
    Failure& failure = failures[static_cast<std::size_t>(call)];
    if (failure.count == 0)
        return ERROR_SUCCESS;
    if (failure.skip > 0) {
        failure.skip--;
        return ERROR_SUCCESS;
    }
    failure.count--;
    return failure.error;
}

StatedWait::StatedWait(const Lock& lock, DWORD milliseconds, TimePoint until) : timeout(milliseconds), deadline(until)
{
    first = this;
    WakeWaiters(lock, &first);
}

StatedWait::~StatedWait()
{
    StatedWait** place = &first;
    while (*place != this)
        place = &(*place)->next;
    *place = next;
}

} // namespace platform

namespace platform_test {

using namespace platform;

void AdvanceClock(DWORD milliseconds)
{
    const Lock lock = TakeBaseLock();
    MoveClock(Scaled(std::chrono::milliseconds(milliseconds)));
    OnClockMoved(lock);
    WakeAllWaiters(lock);
}

bool AwaitBlocked(DWORD timeoutMilliseconds, unsigned threads)
{
    const auto giveUp = SteadyClock::now() + std::chrono::seconds(10);
    const std::array<Source, 1> sources{&StatedWait::first};
    Lock lock = TakeBaseLock();
    const auto found = [&] {
        unsigned blocked = 0;
        for (const StatedWait* wait = StatedWait::first; wait; wait = wait->next)
            blocked += wait->timeout == timeoutMilliseconds && Now() < wait->deadline;
        return blocked >= threads;
    };
    while (!found() && SteadyClock::now() < giveUp)
        WaitForWake(lock, sources, Now() + (giveUp - SteadyClock::now()));
    return found();
}

void FailCall(const char* name, DWORD error, unsigned skip, unsigned count)
{
    const std::lock_guard guard(failuresMutex);
    FailureOf(name) = {error, skip, count};
    anyFailure = true;
}

unsigned PendingFailures(const char* name)
{
    const std::lock_guard guard(failuresMutex);
    return FailureOf(name).count;
}

void ClearFailures()
{
    const std::lock_guard guard(failuresMutex);
    failures = {};
    anyFailure = false;
}

void NameAnsiCodePage(const char* name)
{
    constexpr const char* kVariable = "PHNNRV_ANSI_CODE_PAGE";
    name ? setenv(kVariable, name, 1) : unsetenv(kVariable);
    CodePage::ForgetAnsi();
}

} // namespace platform_test

#endif
