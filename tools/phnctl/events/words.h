// Events in words, for people: how one repeats, when its alarm rings, from when to when it lasts. Used by the lists of
// events and by the notes of an import. Programs never read these texts; JSON has the values.
#pragma once

#include "phnctl/events/rule.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace phnctl {

// "every second Tuesday of the month until 2009-12-31", that day in the event's own time; the rule as it is if a
// handset does not repeat by it.
std::string RuleInWords(EventRule rule, std::string_view zone);

// "15 minutes before", "1 day before", "at the start", "5 minutes after the start"; empty for no alarm.
std::string LeadInWords(const std::optional<std::int64_t>& minutes);

struct ShownSpan
{
    std::string start; // "Tue 2009-03-10 12:00"; "Tue 2009-03-10"
    std::string end;   // "13:00", or with its day if that is another; "all day"
};
ShownSpan SpanInWords(const EventTime& start, const EventTime& end, bool isWholeDays);

} // namespace phnctl
