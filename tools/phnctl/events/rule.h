// How an event repeats: the recurrence rules that a handset can hold (a part of RFC 5545 section 3.3.10), as text and
// in words. Used by the event kind, for the handset's own rules and for those of files alike.
#pragma once

#include "phnctl/events/time.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

enum class Frequency
{
    None, // the event does not repeat
    Daily,
    Weekly,
    Monthly,
    Yearly,
};

struct EventRule
{
    struct Day
    {
        int week = 0; // 0: each; 2: the second of the month, -1: the last
        int day = 0;  // from 0, Monday

        auto operator<=>(const Day&) const = default;
    };

    Frequency frequency = Frequency::None;
    unsigned count = 0;              // 0: not counted
    std::optional<StatedTime> until; // in UTC, of the event's own clock, or the whole of its day
    unsigned interval = 1;
    std::vector<Day> days;
    std::vector<int> months;
    std::vector<int> monthDays; // -1: the last

    std::string written; // the text that it was read from
    std::string problem; // what a handset cannot hold of it: nothing but that text counts then. Empty: it can

    bool Repeats() const { return frequency != Frequency::None || !problem.empty(); }

    // As the library writes it of what the handset holds, and empty for an event that does not repeat.
    std::string Text() const;

    // Orders what it lists as the library does. False: a handset keeps one week of a weekday from the front of the
    // month, and one from its end.
    bool Arrange();

    // Brings the end to the event's own time, and to UTC as the library keeps it.
    void EndInOwnTime(std::string_view zone);
    void EndInUtc(std::string_view zone);

    // Is the start one of the days that the rule lists?
    bool Lists(const EventTime& start) const;

    // The rule of an event that lies so many days later. False: no rule says so.
    bool MoveDays(int distance);
};

// Takes the text of an RRULE as any program writes it.
EventRule ParseRule(std::string_view text);

} // namespace phnctl
