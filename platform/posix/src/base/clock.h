// The stand-in's clock: monotonic, shared by all waits, timers and serial time-outs. A test may advance it, and
// PHNNRV_TIME_SCALE multiplies every duration that a caller states in milliseconds. Points of this clock are compared
// with Now() only; RealTime() is for handing them to the system.
#pragma once

#include <chrono>
#include <cstdint>

#include <windows.h>

namespace platform {

using SteadyClock = std::chrono::steady_clock;
using TimePoint = SteadyClock::time_point;
using Duration = SteadyClock::duration;

constexpr TimePoint kNever = TimePoint::max();

TimePoint Now();

// When a time-out that starts now is over, by the scaled clock; the second one is no shorter than a silence. INFINITE
// is kNever.
TimePoint After(DWORD milliseconds);
TimePoint AfterSilence(DWORD milliseconds);

// A stated duration in the scale of this run.
Duration Scaled(std::chrono::milliseconds stated);

// The same for a duration in which bytes may be under way: no scale makes it shorter than this, or a reply would be
// cut.
constexpr std::chrono::milliseconds kShortestSilence{10};
Duration ScaledSilence(std::chrono::milliseconds stated);

// The system's monotonic time at which the clock, if nobody advances it, reaches this point.
TimePoint RealTime(TimePoint point);

// The count of milliseconds that callers are told: a stated duration lasts as many of them in every scale. It begins at
// PHNNRV_TICK_COUNT where that is set, otherwise with the system.
std::uint64_t TickCount();

// Moves the clock forward. The caller then wakes whoever waits (base_lock.h, service_thread.h).
void MoveClock(Duration by);

} // namespace platform
