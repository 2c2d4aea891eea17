#include "base_lock.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>

namespace platform {
namespace {

// A blocked thread, on whose stack it lies: Sleep needs no memory and cannot fail.
struct Waiter
{
    std::span<const Source> sources;
    Waiter* next;
    std::condition_variable woken = {};
};

// Never destroyed: threads may still wait while the process ends.
struct Base
{
    std::mutex mutex;
    Waiter* first = nullptr; // those who are blocked; a process has few
};

Base& TheBase()
{
    alignas(Base) static std::array<std::byte, sizeof(Base)> storage;
    static Base& base = *new (storage.data()) Base;
    return base;
}

} // namespace

Lock TakeBaseLock()
{
    return Lock(TheBase().mutex);
}

void WakeWaiters(const Lock&, Source source)
{
    for (Waiter* waiter = TheBase().first; waiter; waiter = waiter->next) {
        if (std::ranges::find(waiter->sources, source) != waiter->sources.end())
            waiter->woken.notify_one();
    }
}

void WakeAllWaiters(const Lock&)
{
    for (Waiter* waiter = TheBase().first; waiter; waiter = waiter->next)
        waiter->woken.notify_one();
}

void WaitForWake(Lock& lock, std::span<const Source> sources, TimePoint deadline)
{
    Waiter*& first = TheBase().first;
    Waiter waiter{sources, first};
    first = &waiter;
    if (deadline == kNever)
        waiter.woken.wait(lock);
    else
        waiter.woken.wait_until(lock, RealTime(deadline));
    Waiter** place = &first;
    while (*place != &waiter)
        place = &(*place)->next;
    *place = waiter.next;
}

} // namespace platform
