#include "phnctl/events/rule.h"

#include <algorithm>
#include <chrono>

namespace phnctl {

namespace {

// From the front, from the end.
void ArrangeNumbers(std::vector<int>& numbers)
{
    std::ranges::sort(numbers, {}, [](int number) { return number < 0 ? 1000 - number : number; });
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

bool Holds(const std::vector<int>& numbers, int fromFront, int fromEnd)
{
    return numbers.empty() ||
           std::ranges::any_of(numbers, [&](int number) { return number == fromFront || number == fromEnd; });
}

} // namespace

bool EventRule::Arrange()
{
    ArrangeNumbers(months);
    ArrangeNumbers(monthDays);
    const auto place = [](const Day& day) { return std::pair(day.day, day.week < 0); };
    std::ranges::sort(days);
    days.erase(std::unique(days.begin(), days.end()), days.end());
    std::ranges::sort(days, {}, place);
    return std::ranges::adjacent_find(days, {}, place) == days.end();
}

void EventRule::EndInOwnTime(std::string_view zone)
{
    if (!until)
        return;
    EventTime& time = until->time;
    if (until->form == StatedTime::Form::Day)
        time = {time.year, time.month, time.day, 23, 59, 59};
    else if (until->form == StatedTime::Form::Utc)
        time = ZoneTimeOf(time, zone);
    until->form = StatedTime::Form::Clock;
}

void EventRule::EndInUtc(std::string_view zone)
{
    EndInOwnTime(zone); // also one in UTC: two times in UTC are one local time when the clocks go back
    if (until)
        until = {UtcTimeOf(until->time, zone), StatedTime::Form::Utc};
}

bool EventRule::Lists(const EventTime& start) const
{
    using namespace std::chrono;
    const year_month_day date(year(start.year), month(start.month), day(start.day));
    const auto length =
        static_cast<int>(static_cast<unsigned>(year_month_day_last(date.year(), month_day_last(date.month())).day()));
    const auto today = static_cast<int>(start.day);
    const auto weekdayIndex = static_cast<int>(weekday(sys_days(date)).iso_encoding()) - 1;
    const bool isDay = days.empty() || std::ranges::any_of(days, [&](const Day& listed) {
                           return listed.day == weekdayIndex && (listed.week == 0 || listed.week == (today + 6) / 7 ||
                                                                 listed.week == -((length - today + 7) / 7));
                       });
    return isDay && Holds(months, static_cast<int>(start.month), 0) && Holds(monthDays, today, today - length - 1);
}

bool EventRule::MoveDays(int distance)
{
    const bool isFree = months.empty() && monthDays.empty() &&
                        ((frequency == Frequency::Daily && days.empty()) ||
                         (frequency == Frequency::Weekly && (interval == 1 || days.size() < 2)));
    for (Day& day : days)
        day.day = ((day.day + distance) % 7 + 7) % 7;
    return isFree && Arrange();
}

} // namespace phnctl
