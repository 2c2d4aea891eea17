#include "phnctl/events/words.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <iterator>

namespace phnctl {

namespace {

constexpr const char* kDayNames[] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
constexpr const char* kMonthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                       "July",    "August",   "September", "October", "November", "December"};

constexpr const char* kUnits[] = {"", "day", "week", "month", "year"}; // by their Frequency

std::string Ordinal(int number)
{
    constexpr const char* kWords[] = {"first", "second", "third", "fourth", "fifth"};
    if (number == -1)
        return "last";
    const int size = number < 0 ? -number : number;
    const std::string word = size >= 1 && size <= 5 ? kWords[size - 1] : fmt::format("{}th", size);
    return number < 0 ? word + " to last" : word;
}

// "a, b and c".
std::string Listed(const std::vector<std::string>& items)
{
    if (items.size() < 2)
        return items.empty() ? std::string() : items.front();
    return fmt::format("{} and {}", fmt::join(items.begin(), items.end() - 1, ", "), items.back());
}

std::string DaysInWords(const std::vector<EventRule::Day>& days)
{
    std::vector<std::string> names;
    for (const EventRule::Day& day : days)
        names.push_back((day.week == 0 ? "" : Ordinal(day.week) + ' ') + kDayNames[day.day]);
    return Listed(names);
}

std::string MonthDaysInWords(const std::vector<int>& days)
{
    std::vector<std::string> names;
    for (const int day : days)
        names.push_back(day > 0 ? fmt::format("day {}", day) : fmt::format("the {} day", Ordinal(day)));
    return Listed(names);
}

bool AreWeekdays(const std::vector<EventRule::Day>& days)
{
    return days.size() == 5 && std::ranges::all_of(days, [](const auto& day) { return day.week == 0 && day.day < 5; });
}

// "1 day", "2 hours", "15 minutes".
std::string LengthInWords(std::int64_t minutes)
{
    const auto inUnits = [&](std::int64_t unit, const char* name) {
        return fmt::format("{} {}{}", minutes / unit, name, minutes == unit ? "" : "s");
    };
    return minutes % 1440 == 0 ? inUnits(1440, "day") : minutes % 60 == 0 ? inUnits(60, "hour") : inUnits(1, "minute");
}

} // namespace

std::string RuleInWords(EventRule rule, std::string_view zone)
{
    rule.EndInOwnTime(zone);
    const auto& [frequency, count, until, interval, days, months, monthDays, written, problem] = rule;
    if (frequency == Frequency::None || !problem.empty())
        return rule.Text();
    const char* const unit = kUnits[static_cast<std::size_t>(frequency)];
    std::string words = interval == 1 ? fmt::format("every {}", unit) : fmt::format("every {} {}s", interval, unit);
    const bool isByWeek = std::ranges::any_of(days, [](const EventRule::Day& day) { return day.week != 0; });
    if (isByWeek && frequency == Frequency::Monthly && interval == 1)
        words = fmt::format("every {} of the month", DaysInWords(days));
    else if (isByWeek)
        words += fmt::format(", on the {} of the month", DaysInWords(days));
    else if (AreWeekdays(days) && frequency == Frequency::Weekly && interval == 1)
        words = "every weekday";
    else if (!days.empty())
        words += " on " + DaysInWords(days);
    std::vector<std::string> names;
    for (const int month : months)
        names.push_back(kMonthNames[month - 1]);
    if (frequency == Frequency::Yearly && months.size() == 1 && monthDays.size() == 1 && monthDays.front() > 0)
        words += fmt::format(" on {} {}", monthDays.front(), names.front());
    else if (!months.empty() || !monthDays.empty())
        words += (months.empty() ? "" : " in " + Listed(names)) +
                 (monthDays.empty() ? "" : " on " + MonthDaysInWords(monthDays));
    if (count != 0)
        words += count == 1 ? ", once" : fmt::format(", {} times", count);
    else if (until)
        words += fmt::format(" until {:04}-{:02}-{:02}", until->time.year, until->time.month, until->time.day);
    return words;
}

std::string LeadInWords(const std::optional<std::int64_t>& minutes)
{
    if (!minutes)
        return "";
    if (*minutes == 0)
        return "at the start";
    return LengthInWords(*minutes < 0 ? -*minutes : *minutes) + (*minutes < 0 ? " after the start" : " before");
}

ShownSpan SpanInWords(const EventTime& start, const EventTime& end, bool isWholeDays)
{
    constexpr std::size_t kWeekday = 4; // "Tue ", which the start has
    const std::string lastDay = ShownDay(end);
    const bool isOneDay = ShownDay(start) == lastDay;
    if (isWholeDays)
        return {ShownDay(start), isOneDay ? "all day" : lastDay.substr(kWeekday)};
    return {Shown(start), Shown(end).substr(isOneDay ? lastDay.size() + 1 : kWeekday)};
}

} // namespace phnctl
