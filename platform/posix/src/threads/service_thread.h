// The one thread that works for all: it waits (epoll) for descriptors and for the next timer, and runs their functions
// with the base lock held. It is started by the first watch or timer, lives until the process ends, and sleeps while
// there is nothing to do. A function given here is short, does not block and calls no exported Win32 function; it may
// start and cancel timers and watches, its own included.
#pragma once

#include <cstdint>
#include <functional>

#include "base/base_lock.h"

namespace platform {

using WatchId = std::uint64_t; // 0 is none
using TimerId = std::uint64_t; // 0 is none

// Calls onEvents(lock, events) whenever the descriptor has one of the epoll events. EPOLLET applies as for epoll.
WatchId WatchDescriptor(const Lock& lock, int descriptor, std::uint32_t events,
                        std::function<void(const Lock&, std::uint32_t)> onEvents);

// Changes the events that are watched for.
void ChangeWatch(const Lock& lock, WatchId watch, std::uint32_t events);

// Ends the watch; its function is not called any more. Call it before the descriptor is closed. 0 is ignored.
void EndWatch(const Lock& lock, WatchId watch);

// Calls onDue(lock) once, when the clock has reached the point.
TimerId StartTimer(const Lock& lock, TimePoint due, std::function<void(const Lock&)> onDue);

// A timer that has been cancelled is not called any more. 0 and a timer that has run are ignored.
void CancelTimer(const Lock& lock, TimerId timer);

// For the test hook: the clock was advanced.
void OnClockMoved(const Lock& lock);

} // namespace platform
