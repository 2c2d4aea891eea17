#include "base_lock.h"

namespace platform {
namespace {

// Never destroyed: threads may still wait while the process ends.
struct Base
{
    std::mutex mutex;
    std::condition_variable changed;
};

Base& TheBase()
{
    static Base& base = *new Base;
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
