#include "phnctl/events/foreign/reading.h"

#include <algorithm>

namespace phnctl {

namespace {

// In each week of the year that begins with a start, or of one in which the handset shows it.
template <class Condition>
bool IsSoAllYear(icaltimetype start, const Condition& isSo)
{
    start.year = std::clamp(start.year, kFirstYear, kLastYear);
    for (int week = 0; week < 53; ++week) {
        if (!isSo(start))
            return false;
        icaltime_adjust(&start, 7, 0, 0, 0);
    }
    return true;
}

} // namespace

std::optional<int> FixedOffset(icaltimetype start, icaltimezone* zone)
{
    const int offset = icaltimezone_get_utc_offset(zone, &start, nullptr);
    const auto isSo = [&](icaltimetype week) { return icaltimezone_get_utc_offset(zone, &week, nullptr) == offset; };
    return IsSoAllYear(start, isSo) ? std::optional(offset) : std::nullopt;
}

bool IsLocalClock(icaltimetype start, icaltimezone* zone)
{
    return IsSoAllYear(start, [&](const icaltimetype& week) { return ToLocal(zone, Converted(week)) == 0; });
}

std::int64_t ToLocal(icaltimezone* zone, const EventTime& clock)
{
    icaltimetype time = ToLibical(clock);
    const int offset = icaltimezone_get_utc_offset(zone, &time, nullptr);
    return SecondsOf(ZoneTimeOf(TimeOf(SecondsOf(clock) - offset), "")) - SecondsOf(clock);
}

} // namespace phnctl
