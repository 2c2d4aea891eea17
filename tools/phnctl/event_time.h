// Dates and times of events, and the zones that a handset knows. Used by everything about events.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace phnctl {

struct EventTime
{
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;

    auto operator<=>(const EventTime&) const = default;
};

// "20090310T120000", with anything behind it. Nothing for what is no date or no time.
std::optional<EventTime> ParseEventTime(std::string_view text);
std::string EventTimeText(const EventTime& time);

// Seconds since 1970 of a time taken for UTC, and back.
std::int64_t SecondsOf(const EventTime& time);
EventTime TimeOf(std::int64_t seconds);

// The zones by the names under which the library writes them. Local time has the empty name, UTC is "UTC"; the others
// are as many hours behind it, the whole year.
std::optional<int> HoursBehindUtc(std::string_view zone);
inline constexpr const char* kUtcZone = "UTC";

// A time of a zone as the system's local time, and the present.
EventTime LocalTimeOf(const EventTime& time, std::string_view zone);
EventTime LocalNow();

// "Tue 2009-03-10 12:00".
std::string Shown(const EventTime& time);

} // namespace phnctl
