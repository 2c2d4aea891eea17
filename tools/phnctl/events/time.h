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

inline constexpr int kFirstYear = 1981; // that a handset keeps
inline constexpr int kLastYear = 2037;

bool Exists(const EventTime& time);

// "20090310T120000", with anything behind it. Nothing for what is no date or no time.
std::optional<EventTime> ParseEventTime(std::string_view text);
std::string EventTimeText(const std::optional<EventTime>& time); // empty for none

// A time as a calendar states it.
struct StatedTime
{
    enum class Form
    {
        Day,   // "20090310", the whole of it; the time is its begin
        Clock, // "20090310T120000", of a clock that is named elsewhere
        Utc,   // "20090310T120000Z"
    };

    EventTime time;
    Form form = Form::Clock;
};

std::optional<StatedTime> ParseStatedTime(std::string_view text);
std::string StatedTimeText(const StatedTime& stated);

// Seconds since 1970 of a time taken for UTC, and back.
std::int64_t SecondsOf(const EventTime& time);
EventTime TimeOf(std::int64_t seconds);

// The zones by the names under which the library writes them. Local time has the empty name, UTC is "UTC"; the others
// are as many hours behind it, the whole year. NameOfZone finds the first of those; empty: there is none.
std::optional<int> HoursBehindUtc(std::string_view zone);
std::string NameOfZone(int hoursBehind);
inline constexpr const char* kUtcZone = "UTC";

// From a zone's time to UTC and back; the system's own rules tell what local time is.
EventTime UtcTimeOf(const EventTime& time, std::string_view zone);
EventTime ZoneTimeOf(const EventTime& utc, std::string_view zone);

// A time of a zone as the system's local time, and the present.
EventTime LocalTimeOf(const EventTime& time, std::string_view zone);
EventTime LocalNow();

std::string Shown(const EventTime& time);    // "Tue 2009-03-10 12:00"
std::string ShownDay(const EventTime& time); // "Tue 2009-03-10"

// "2009-03-10T12:00:00-05:00", a time of a zone as JSON has it.
std::string IsoText(const EventTime& time, std::string_view zone);

} // namespace phnctl
