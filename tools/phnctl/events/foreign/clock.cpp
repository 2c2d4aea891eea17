#include "phnctl/events/file.h"
#include "phnctl/events/foreign/reading.h"
#include "phnctl/events/words.h"

#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

using namespace event_property;

namespace {

constexpr std::size_t kMostLookedAt = 1000; // occurrences: some years of a daily event

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

void TellWhatIsOff(EventDraft& draft, icaltimezone* zone, std::int64_t shift, const std::string& name)
{
    const auto rule = RuleOf(draft);
    if (!rule)
        return;
    auto starts =
        Occurrences(*draft.start, rule->Text(), {kFirstYear, 1, 1}, {kLastYear, 12, 31, 23, 59, 59}, kMostLookedAt);
    std::erase_if(starts, [&](const EventTime& start) {
        return std::ranges::find(draft.exceptions, start) != draft.exceptions.end();
    });
    const auto lateness = [&](const EventTime& own) { return shift - ToLocal(zone, TimeOf(SecondsOf(own) - shift)); };
    const auto isOff = [&](const EventTime& own) { return lateness(own) != 0; };
    const auto first = std::ranges::find_if(starts, isOff);
    if (first == starts.end())
        return;
    const auto next = std::find_if_not(first, starts.end(), isOff);
    const EventTime last = *std::prev(next);
    const std::string when = next == starts.end() ? fmt::format("from {} on", ShownDay(*first))
                             : last == *first     ? "on " + ShownDay(last)
                                                  : fmt::format("from {} to {}", ShownDay(*first), ShownDay(last));
    const std::int64_t late = lateness(*first);
    draft.Tell("zone-dropped", kStart,
               fmt::format("the handset has no '{}': it repeats at {:02}:{:02} local time, which is {} {} {}{}", name,
                           draft.start->hour, draft.start->minute, LengthInWords(std::abs(late) / 60),
                           late > 0 ? "late" : "early", when,
                           std::any_of(next, starts.end(), isOff) ? ", and again later" : ""));
}

} // namespace phnctl
