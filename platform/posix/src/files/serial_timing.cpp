#include "files/serial_timing.h"

#include <algorithm>
#include <cstdint>

namespace platform {
namespace {

using std::chrono::milliseconds;

// multiplier * size + constant, from now on; none if both are zero. What no clock can count is no time-out.
TimePoint TotalEnd(DWORD multiplier, DWORD constant, DWORD size)
{
    if (multiplier == 0 && constant == 0)
        return kNever;
    constexpr std::uint64_t longest = 24ull * 365 * 100 * 60 * 60 * 1000;
    const std::uint64_t total = std::uint64_t{multiplier} * size;
    if (total >= longest)
        return kNever;
    return Now() + Scaled(milliseconds(total + constant));
}

} // namespace

SerialTiming SerialTiming::OfRead(const COMMTIMEOUTS& timeouts, DWORD size)
{
    const milliseconds interval(timeouts.ReadIntervalTimeout);
    SerialTiming timing;
    timing.silence_ = std::min(interval, kShortestSilence);
    timing.interval_ = ScaledSilence(interval);
    timing.total_ = TotalEnd(timeouts.ReadTotalTimeoutMultiplier, timeouts.ReadTotalTimeoutConstant, size);
    return timing;
}

SerialTiming SerialTiming::OfWrite(const COMMTIMEOUTS& timeouts, DWORD size)
{
    SerialTiming timing;
    timing.total_ = TotalEnd(timeouts.WriteTotalTimeoutMultiplier, timeouts.WriteTotalTimeoutConstant, size);
    return timing;
}

void SerialTiming::OnBytes()
{
    lastBytes_ = Now();
    lastBytesReal_ = RealTime(lastBytes_);
}

TimePoint SerialTiming::End() const
{
    if (interval_ == Duration::zero() || lastBytes_ == kNever)
        return total_;
    const TimePoint now = Now();
    const Duration silenceLeft = lastBytesReal_ + silence_ - RealTime(now);
    return std::min(total_, std::max(lastBytes_ + interval_, now + silenceLeft));
}

} // namespace platform
