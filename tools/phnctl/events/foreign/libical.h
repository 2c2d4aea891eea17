// Between the tool's values and libical's. Used by the files that read the calendars of other programs; nothing else
// of the tool sees libical. What libical hands out is freed by the caller where these functions say so.
#pragma once

#include "phnctl/events/time.h"

#include <libical/ical.h>
#include <optional>
#include <string>

namespace phnctl {

// A text that the caller owns, and one that libical keeps.
inline std::string Taken(char* text)
{
    const std::string taken = text ? text : "";
    icalmemory_free_buffer(text);
    return taken;
}

inline std::string Given(const char* text)
{
    return text ? text : "";
}

inline EventTime Converted(const icaltimetype& time)
{
    return {time.year,
            static_cast<unsigned>(time.month),
            static_cast<unsigned>(time.day),
            static_cast<unsigned>(time.hour),
            static_cast<unsigned>(time.minute),
            static_cast<unsigned>(time.second)};
}

// Nothing for a date that does not exist.
inline std::optional<EventTime> FromLibical(const icaltimetype& time)
{
    const EventTime converted = Converted(time);
    return Exists(converted) ? std::optional(converted) : std::nullopt;
}

inline icaltimetype ToLibical(const EventTime& time)
{
    icaltimetype converted = icaltime_null_time();
    converted.year = time.year;
    converted.month = static_cast<int>(time.month);
    converted.day = static_cast<int>(time.day);
    converted.hour = static_cast<int>(time.hour);
    converted.minute = static_cast<int>(time.minute);
    converted.second = static_cast<int>(time.second);
    return converted;
}

// Seconds since 1970; without a zone of its own as if it were UTC, so that it is the same wherever it is read.
inline std::int64_t InstantOf(icaltimetype time)
{
    if (time.zone)
        time = icaltime_convert_to_zone(time, icaltimezone_get_utc_timezone());
    return SecondsOf(FromLibical(time).value_or(EventTime{1970, 1, 1}));
}

} // namespace phnctl
