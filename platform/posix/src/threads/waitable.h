// What can be waited for: events, mutexes, threads, and a thread's message queue. A kind says when it is signalled and
// what a satisfied wait takes from it; the waiting itself is written once, here. A kind that becomes signalled calls
// Wake.
#pragma once

#include <array>
#include <memory>
#include <span>

#include "base/base_lock.h"
#include "threads/handle_table.h"

namespace platform {

// What carries on the operation that an object stands for the end of. A thread that waits for the end may do that
// itself: the service thread need not be woken to wake it in turn.
class Carrier
{
public:
    virtual ~Carrier() = default;

    // Waits like WaitForWake, and carries on meanwhile. False if another thread does so already.
    virtual bool CarryOn(Lock& lock, std::span<const Source> sources, TimePoint deadline) = 0;
};

class Waitable : public Object
{
public:
    Waitable* AsWaitable() final { return this; }

    // Whether a wait of the calling thread would be satisfied now.
    virtual bool IsSignalled(const Lock& lock) const = 0;

    // Takes what a satisfied wait of the calling thread takes. True if it was abandoned.
    virtual bool Acquire(const Lock&) { return false; }

    // What changes when it becomes signalled.
    virtual Source ChangesWith() const { return this; }

    // Null where the service thread alone brings it about, or another thread of the program.
    virtual std::shared_ptr<Carrier> CarriedBy(const Lock&) const { return nullptr; }

    // When it becomes signalled by the clock alone.
    virtual TimePoint IsDueAt(const Lock&) const { return kNever; }

protected:
    void Wake(const Lock& lock) const { WakeWaiters(lock, ChangesWith()); }
};

// The objects of one wait.
class WaitableList
{
public:
    // Those of a caller's array of handles, at most MAXIMUM_WAIT_OBJECTS; throws ERROR_INVALID_HANDLE.
    WaitableList(const HANDLE* handles, DWORD count)
    {
        for (const HANDLE handle : std::span(handles, count))
            Add(FromHandle<Waitable>(handle));
    }

    void Add(std::shared_ptr<Waitable> object) { objects_[count_++] = std::move(object); }

    auto begin() const { return objects_.begin(); }
    auto end() const { return begin() + static_cast<std::ptrdiff_t>(count_); }

private:
    std::array<std::shared_ptr<Waitable>, MAXIMUM_WAIT_OBJECTS> objects_;
    std::size_t count_ = 0;
};

// The rule of WaitForMultipleObjects, with its results: WAIT_OBJECT_0 or WAIT_ABANDONED_0 plus the index, WAIT_TIMEOUT.
// The time-out, which the caller states in milliseconds, is over at the deadline.
DWORD WaitFor(Lock& lock, const WaitableList& objects, bool all, DWORD milliseconds, TimePoint deadline);

} // namespace platform
