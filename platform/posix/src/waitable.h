// What can be waited for: events, mutexes, threads, and a thread's message queue. A kind says when it is signalled and
// what a satisfied wait takes from it; the waiting itself is written once, here. A kind that becomes signalled calls
// WakeWaiters.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "base_lock.h"
#include "handle_table.h"

namespace platform {

class Waitable : public Object
{
public:
    // Whether a wait of the calling thread would be satisfied now.
    virtual bool IsSignalled(const Lock& lock) const = 0;

    // Takes what a satisfied wait of the calling thread takes. True if it was abandoned.
    virtual bool Acquire(const Lock&) { return false; }
};

using WaitableList = std::span<const std::shared_ptr<Waitable>>;

// The rule of WaitForMultipleObjects, with its results: WAIT_OBJECT_0 or WAIT_ABANDONED_0 plus the index, WAIT_TIMEOUT.
DWORD WaitFor(Lock& lock, WaitableList objects, bool all, DWORD milliseconds);

// The objects of a caller's array of handles; throws ERROR_INVALID_HANDLE.
std::vector<std::shared_ptr<Waitable>> WaitablesOf(const HANDLE* handles, DWORD count);

} // namespace platform
