#include "threads/service_thread.h"

#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <vector>

#include "base/unique_descriptor.h"
#include "base/win32_call.h"
#include "threads/thread_start.h"

namespace platform {
namespace {

using OnEvents = std::function<void(const Lock&, std::uint32_t)>;
using OnDue = std::function<void(const Lock&)>;

class Service
{
public:
    Service()
        : epoll_(epoll_create1(EPOLL_CLOEXEC)), timer_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
    {
        if (!epoll_ || !timer_)
            ThrowErrno();
        Control(EPOLL_CTL_ADD, timer_.Get(), EPOLLIN, kTimerEvent);
        StartDetachedThread([](void* service) -> void* { static_cast<Service*>(service)->Run(); }, this);
    }

    WatchId AddWatch(int descriptor, std::uint32_t events, OnEvents onEvents)
    {
        const WatchId id = ++lastId_;
        const auto added = watches_.emplace(id, Watch{descriptor, std::make_shared<OnEvents>(std::move(onEvents))});
        if (const DWORD error = ErrorOf([&] { Control(EPOLL_CTL_ADD, descriptor, events, id); })) {
            watches_.erase(added.first);
            throw Win32Error{error};
        }
        return id;
    }

    void ChangeWatch(WatchId id, std::uint32_t events)
    {
        Control(EPOLL_CTL_MOD, watches_.at(id).descriptor, events, id);
    }

    void EndWatch(WatchId id)
    {
        const auto watch = watches_.find(id);
        if (watch == watches_.end())
            return;
        Control(EPOLL_CTL_DEL, watch->second.descriptor, 0, id);
        watches_.erase(watch);
    }

    TimerId AddTimer(TimePoint due, OnDue onDue)
    {
        timers_.push_back({++lastId_, due, std::move(onDue)});
        if (const DWORD error = ErrorOf([&] { Arm(); })) {
            timers_.pop_back();
            throw Win32Error{error};
        }
        return lastId_;
    }

    // The system's timer is left as it is: at worst the thread wakes once for nothing.
    void CancelTimer(TimerId id)
    {
        std::erase_if(timers_, [id](const Timer& timer) { return timer.id == id; });
    }

    void OnClockMoved()
    {
        armed_ = kNever;
        Arm();
    }

private:
    static constexpr std::uint64_t kTimerEvent = 0;
    static constexpr int kPause = 10; // milliseconds before what has failed is tried again

    struct Watch
    {
        int descriptor;
        std::shared_ptr<OnEvents> onEvents; // kept by the call in progress, which may end the watch
        bool isOwed = false;                // it has failed, such as for want of memory, and is due again
    };

    struct Timer
    {
        TimerId id;
        TimePoint due;
        OnDue onDue;
    };

    void Control(int operation, int descriptor, std::uint32_t events, std::uint64_t id)
    {
        epoll_event event{};
        event.events = events;
        event.data.u64 = id;
        if (epoll_ctl(epoll_.Get(), operation, descriptor, &event))
            ThrowErrno();
    }

    auto NextTimer() { return std::ranges::min_element(timers_, {}, &Timer::due); }

    // Sets the system's timer for the next one that is due, unless it is set for an earlier time already.
    void Arm()
    {
        const auto next = NextTimer();
        if (next == timers_.end() || next->due >= armed_)
            return;
        const TimePoint due = next->due;
        const auto time = std::max(RealTime(due).time_since_epoch(), Duration(1)); // 0 would switch it off
        const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
        itimerspec setting{};
        setting.it_value.tv_sec = static_cast<time_t>(seconds.count());
        setting.it_value.tv_nsec = static_cast<decltype(setting.it_value.tv_nsec)>((time - seconds).count());
        if (timerfd_settime(timer_.Get(), TFD_TIMER_ABSTIME, &setting, nullptr))
            ThrowErrno();
        armed_ = due;
    }

    void RunDueTimers(const Lock& lock)
    {
        for (auto next = NextTimer(); next != timers_.end() && next->due <= Now(); next = NextTimer()) {
            const OnDue onDue = std::move(next->onDue);
            timers_.erase(next);
            onDue(lock);
        }
    }

    void Handle(const Lock& lock, const epoll_event& event)
    {
        const std::uint64_t id = event.data.u64; // copied, because the record is packed
        if (id == kTimerEvent) {
            std::uint64_t expirations = 0;
            if (read(timer_.Get(), &expirations, sizeof expirations) > 0)
                armed_ = kNever;
            return;
        }
        if (watches_.contains(id)) // not ended since the event was fetched
            Call(lock, id, event.events);
    }

    void Call(const Lock& lock, WatchId id, std::uint32_t events)
    {
        const auto onEvents = watches_.at(id).onEvents;
        const bool hasFailed = ErrorOf([&] { (*onEvents)(lock, events); }) != ERROR_SUCCESS;
        if (const auto watch = watches_.find(id); watch != watches_.end())
            watch->second.isOwed = hasFailed;
    }

    auto FirstOwed(WatchId behind)
    {
        return std::find_if(watches_.upper_bound(behind), watches_.end(),
                            [](const auto& one) { return one.second.isOwed; });
    }

    void CallOwed(const Lock& lock)
    {
        WatchId last = 0;
        for (auto owed = FirstOwed(last); owed != watches_.end(); owed = FirstOwed(last)) {
            last = owed->first;
            Call(lock, last, 0);
        }
    }

    // Nothing can be done for a process that closes our descriptors: it is terminated.
    [[noreturn]] void Run() noexcept
    {
        std::array<epoll_event, 16> events;
        int pause = -1;
        for (;;) {
            const int count = epoll_wait(epoll_.Get(), events.data(), static_cast<int>(events.size()), pause);
            if (count < 0 && errno != EINTR)
                ThrowErrno();
            const Lock lock = TakeBaseLock();
            CallOwed(lock);
            for (int i = 0; i < count; i++)
                Handle(lock, events[static_cast<std::size_t>(i)]);
            RunDueTimers(lock);
            Arm();
            pause = FirstOwed(0) == watches_.end() ? -1 : kPause;
        }
    }

    // All under the base lock.
    const UniqueDescriptor epoll_;
    const UniqueDescriptor timer_;
    std::map<WatchId, Watch> watches_;
    std::vector<Timer> timers_;
    TimePoint armed_ = kNever; // what the system's timer is set for
    std::uint64_t lastId_ = 0;
};

Service* started = nullptr;

// Never destroyed, as its thread lives until the process ends.
Service& TheService()
{
    if (!started)
        started = new Service;
    return *started;
}

} // namespace

WatchId WatchDescriptor(const Lock&, int descriptor, std::uint32_t events, OnEvents onEvents)
{
    return TheService().AddWatch(descriptor, events, std::move(onEvents));
}

void ChangeWatch(const Lock&, WatchId watch, std::uint32_t events)
{
    TheService().ChangeWatch(watch, events);
}

void EndWatch(const Lock&, WatchId watch)
{
    if (watch)
        TheService().EndWatch(watch);
}

TimerId StartTimer(const Lock&, TimePoint due, OnDue onDue)
{
    return TheService().AddTimer(due, std::move(onDue));
}

void CancelTimer(const Lock&, TimerId timer)
{
    if (timer)
        TheService().CancelTimer(timer);
}

void OnClockMoved(const Lock&)
{
    if (started)
        started->OnClockMoved();
}

} // namespace platform
