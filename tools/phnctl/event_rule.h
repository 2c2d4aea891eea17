// How an event repeats: the recurrence rules that a handset can hold (a part of RFC 5545 section 3.3.10), as text and
// in words. Used by the event kind, for the handset's own rules and for those of files alike.
#pragma once

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
    std::string until;     // "20091231T000000Z"; empty: none
    unsigned interval = 1;
    std::vector<Day> days;
    std::vector<int> months;
    std::vector<int> monthDays; // -1: the last

    // Takes the text of an RRULE as any program writes it. On false, `problem` says what a handset cannot hold of it.
    bool Parse(std::string_view text, std::string& problem);

    // As the library writes it of what the handset holds, and empty for an event that does not repeat.
    std::string Text() const;

    // "every second Tuesday of the month until 2009-12-31".
    std::string Words() const;
};

} // namespace phnctl
