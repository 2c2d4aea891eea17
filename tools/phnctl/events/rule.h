// How an event repeats: the recurrence rules that a handset can hold (a part of RFC 5545 section 3.3.10), as text and
// in words. Used by the event kind, for the handset's own rules and for those of files alike.
#pragma once

#include "phnctl/events/time.h"

#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

struct EventRule
{
    struct Day
    {
        int week = 0; // 0: each; 2: the second of the month, -1: the last
        int day = 0;  // from 0, Monday

        auto operator<=>(const Day&) const = default;
    };

    std::string frequency; // "DAILY", "WEEKLY", "MONTHLY" or "YEARLY"; empty: the event does not repeat
    unsigned count = 0;    // 0: not counted
    // "20091231T000000Z", in UTC; without the Z in the event's own time; "20091231", that whole day. Empty: none.
    std::string until;
    unsigned interval = 1;
    std::vector<Day> days;
    std::vector<int> months;
    std::vector<int> monthDays; // -1: the last

    // Takes the text of an RRULE as any program writes it. On false, `problem` says what a handset cannot hold of it.
    bool Parse(std::string_view text, std::string& problem);

    // As the library writes it of what the handset holds, and empty for an event that does not repeat.
    std::string Text() const;

    // Brings the end to the event's own time, and to UTC as the library keeps it.
    void EndInOwnTime(std::string_view zone);
    void EndInUtc(std::string_view zone);

    // Is the start one of the days that the rule lists?
    bool Lists(const EventTime& start) const;

    // The rule of an event that lies so many days later. False: no rule says so.
    bool MoveDays(int distance);
};

// The text of a rule whose end is a time of the event's own, as a search for occurrences needs it.
std::string RuleInOwnTime(const std::string& text, std::string_view zone);

} // namespace phnctl
