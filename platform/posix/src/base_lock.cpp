#include "base_lock.h"

#include <array>
#include <cstddef>
#include <new>

namespace platform {
namespace {

// Never destroyed: threads may still wait while the process ends. It needs no memory but its own: Sleep cannot fail.
struct Base
{
    std::mutex mutex;
    std::condition_variable changed;
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

void WakeWaiters(const Lock&)
{
    TheBase().changed.notify_all();
}

void WaitForWake(Lock& lock, TimePoint deadline)
{
    if (deadline == kNever)
        TheBase().changed.wait(lock);
    else
        TheBase().changed.wait_until(lock, RealTime(deadline));
}

} // namespace platform
