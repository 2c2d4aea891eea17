#include "base/clock.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace platform {
namespace {

std::atomic<Duration::rep> advanced = 0;

// A factor that is no number, not above zero or out of all proportion is taken for 1.
double ReadScale()
{
    const char* text = std::getenv("PHNNRV_TIME_SCALE");
    const double scale = text ? std::strtod(text, nullptr) : 1.0;
    return scale > 0.0 && scale <= 1000.0 ? scale : 1.0;
}

double Scale()
{
    static const double scale = ReadScale();
    return scale;
}

// By the clock, whatever it begins at.
std::uint64_t TicksUntilNow()
{
    const Duration::rep passed = Now().time_since_epoch().count();
    constexpr Duration::rep perMillisecond = Duration(std::chrono::milliseconds(1)).count();
    if (Scale() == 1.0)
        return static_cast<std::uint64_t>(passed / perMillisecond);
    constexpr double most = 9e18; // of what the count holds
    return static_cast<std::uint64_t>(std::min(static_cast<double>(passed) / perMillisecond / Scale(), most));
}

// What is added to that, without a carry.
std::uint64_t ReadTickOffset()
{
    const char* text = std::getenv("PHNNRV_TICK_COUNT");
    return text ? std::strtoull(text, nullptr, 10) - TicksUntilNow() : 0;
}

} // namespace

TimePoint Now()
{
    return SteadyClock::now() + Duration(advanced.load(std::memory_order_relaxed));
}

Duration Scaled(std::chrono::milliseconds stated)
{
    if (Scale() == 1.0)
        return stated;
    using Milliseconds = std::chrono::duration<double, std::milli>;
    constexpr Milliseconds longest = std::chrono::hours(24 * 365 * 100);
    return std::chrono::duration_cast<Duration>(std::min(Milliseconds(stated) * Scale(), longest));
}

Duration ScaledSilence(std::chrono::milliseconds stated)
{
    return std::max<Duration>(Scaled(stated), std::min(stated, kShortestSilence));
}

TimePoint After(DWORD milliseconds)
{
    return milliseconds == INFINITE ? kNever : Now() + Scaled(std::chrono::milliseconds(milliseconds));
}

TimePoint AfterSilence(DWORD milliseconds)
{
    return milliseconds == INFINITE ? kNever : Now() + ScaledSilence(std::chrono::milliseconds(milliseconds));
}

TimePoint RealTime(TimePoint point)
{
    return point == kNever ? kNever : point - Duration(advanced.load(std::memory_order_relaxed));
}

std::uint64_t TickCount()
{
    static const std::uint64_t offset = ReadTickOffset();
    return TicksUntilNow() + offset;
}

void MoveClock(Duration by)
{
    advanced.fetch_add(by.count(), std::memory_order_relaxed);
}

} // namespace platform
