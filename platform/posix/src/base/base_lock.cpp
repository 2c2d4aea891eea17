#include "base/base_lock.h"

#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <new>

namespace platform {
namespace {

// A blocked thread, on whose stack it lies: Sleep needs no memory and cannot fail.
class Waiter
{
public:
    Waiter(std::span<const Source> sources, int bell);
    ~Waiter();
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;

    bool IsBlockedFor(Source source) const { return std::ranges::find(sources_, source) != sources_.end(); }
    void Wake() { bell_ == kNoBell ? woken.notify_one() : Ring(bell_); }

    static constexpr int kNoBell = -1;

    Waiter* next;
    std::condition_variable woken;

private:
    const std::span<const Source> sources_;
    const int bell_;
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

Waiter::Waiter(std::span<const Source> sources, int bell) : next(TheBase().first), sources_(sources), bell_(bell)
{
    TheBase().first = this;
}

Waiter::~Waiter()
{
    Waiter** place = &TheBase().first;
    while (*place != this)
        place = &(*place)->next;
    *place = next;
}

} // namespace

Lock TakeBaseLock()
{
    return Lock(TheBase().mutex);
}

void WakeWaiters(const Lock&, Source source)
{
    for (Waiter* waiter = TheBase().first; waiter; waiter = waiter->next) {
        if (waiter->IsBlockedFor(source))
            waiter->Wake();
    }
}

void WakeAllWaiters(const Lock&)
{
    for (Waiter* waiter = TheBase().first; waiter; waiter = waiter->next)
        waiter->Wake();
}

void WaitForWake(Lock& lock, std::span<const Source> sources, TimePoint deadline)
{
    Waiter waiter(sources, Waiter::kNoBell);
    if (deadline == kNever)
        waiter.woken.wait(lock);
    else
        waiter.woken.wait_until(lock, RealTime(deadline));
}

void WaitForWakeOr(Lock& lock, std::span<const Source> sources, TimePoint deadline, pollfd looked, int bell)
{
    Waiter waiter(sources, bell);
    pollfd both[] = {looked, {bell, POLLIN, 0}};
    const Duration left = deadline == kNever ? Duration::zero() : std::max(deadline - Now(), Duration::zero());
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    const timespec time{seconds.count(), static_cast<long>((left - seconds).count())};
    lock.unlock();
    ppoll(both, std::size(both), deadline == kNever ? nullptr : &time, nullptr);
    lock.lock();
    eventfd_t rings = 0;
    if (both[1].revents)
        eventfd_read(bell, &rings);
}

void Ring(int bell)
{
    eventfd_write(bell, 1);
}

} // namespace platform
