#include "phnctl/events/rule.h"

#include "phnctl/text/content_line.h"
#include "phnctl/text/number.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <optional>

namespace phnctl {

namespace {

constexpr std::array<std::string_view, 7> kDays = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
constexpr std::size_t kLongestDays = 39; // characters of a BYDAY list that the library reads

constexpr std::array<std::string_view, 4> kFrequencies = {"DAILY", "WEEKLY", "MONTHLY", "YEARLY"};

std::vector<std::string> Split(const std::string& text, char separator)
{
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator)
            parts.emplace_back();
        else if (c != ' ')
            parts.back() += c;
    }
    return parts;
}

std::optional<int> SignedNumber(std::string_view text, unsigned largest)
{
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative || text.starts_with('+') ? 1 : 0);
    const auto number = ParseNumber(text, largest);
    if (!number || *number == 0)
        return std::nullopt;
    return isNegative ? -static_cast<int>(*number) : static_cast<int>(*number);
}

bool ParseNumbers(const std::string& list, unsigned largest, bool isFromEndAllowed, std::vector<int>& numbers)
{
    for (const std::string& item : Split(list, ',')) {
        const auto number = SignedNumber(item, largest);
        if (!number || (*number < 0 && !isFromEndAllowed))
            return false;
        numbers.push_back(*number);
    }
    return true;
}

bool ParseDays(const std::string& list, std::vector<EventRule::Day>& days)
{
    for (const std::string& item : Split(list, ',')) {
        const std::size_t length = item.size();
        const auto day = length < 2 ? kDays.end() : std::ranges::find(kDays, item.substr(length - 2));
        const auto week = length == 2 ? 0 : SignedNumber(std::string_view(item).substr(0, length - 2), 5);
        if (day == kDays.end() || !week)
            return false;
        days.push_back({*week, static_cast<int>(day - kDays.begin())});
    }
    return true;
}

// From the front, from the end: as the library lists them.
void Arrange(std::vector<int>& numbers)
{
    std::ranges::sort(numbers, {}, [](int number) { return number < 0 ? 1000 - number : number; });
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

// The second of all Tuesdays is the second Tuesday; of several weekdays there is no such short form.
bool TakePosition(EventRule& rule, int position)
{
    const bool isInMonth = rule.frequency == "MONTHLY" || (rule.frequency == "YEARLY" && rule.months.size() == 1);
    if (!isInMonth || !rule.monthDays.empty() || rule.days.size() != 1 || rule.days.front().week != 0)
        return false;
    rule.days.front().week = position;
    return true;
}

// As the library lists them. It keeps one week of a weekday from the front, and one from the end.
bool ArrangeDays(std::vector<EventRule::Day>& days)
{
    const auto place = [](const EventRule::Day& day) { return std::pair(day.day, day.week < 0); };
    std::ranges::sort(days);
    days.erase(std::unique(days.begin(), days.end()), days.end());
    std::ranges::sort(days, {}, place);
    return std::ranges::adjacent_find(days, {}, place) == days.end();
}

// "20091231", "20091231T120000" or "20091231T120000Z" of a year that the library takes.
bool IsEnd(const std::string& until)
{
    const bool isDate = until.size() == 8;
    const auto time = ParseEventTime(isDate ? until + "T000000" : until);
    return time && time->year >= kFirstYear &&
           (isDate || until.size() == 15 || (until.size() == 16 && until[15] == 'Z'));
}

// Every other week from Sunday is not every other week from Monday, as the handset counts them.
bool IsSplitByWeekStart(const EventRule& rule, int weekStart)
{
    const auto isBefore = [&](const EventRule::Day& day) { return day.day < weekStart; };
    return rule.frequency == "WEEKLY" && rule.interval > 1 && std::ranges::any_of(rule.days, isBefore) &&
           !std::ranges::all_of(rule.days, isBefore);
}

bool Holds(const std::vector<int>& numbers, int fromFront, int fromEnd)
{
    return numbers.empty() ||
           std::ranges::any_of(numbers, [&](int number) { return number == fromFront || number == fromEnd; });
}

std::string DayText(const EventRule::Day& day)
{
    const auto name = kDays[static_cast<std::size_t>(day.day)];
    return day.week == 0 ? std::string(name) : fmt::format("{}{}", day.week, name);
}

} // namespace

bool EventRule::Parse(std::string_view text, std::string& problem)
{
    *this = {};
    std::vector<int> positions;
    std::vector<Day> weekStart;
    for (const std::string& part : Split(UpperCase(text), ';')) {
        const std::size_t equals = std::min(part.find('='), part.size());
        const std::string name = part.substr(0, equals);
        const std::string value = part.substr(std::min(equals + 1, part.size()));
        bool isHeld = true;
        if (name == "FREQ") {
            frequency = value;
            isHeld = std::ranges::count(kFrequencies, value) != 0;
        } else if (name == "COUNT" || name == "INTERVAL") {
            const auto number = ParseNumber(value, 0x7FFFFFFF);
            isHeld = number && *number != 0;
            (name == "COUNT" ? count : interval) = static_cast<unsigned>(number.value_or(0));
        } else if (name == "UNTIL") {
            until = value.starts_with("9999") ? "" : value; // how some say that there is no end
            isHeld = until.empty() || IsEnd(until);
        } else if (name == "BYDAY") {
            isHeld = ParseDays(value, days) && value.size() <= kLongestDays;
        } else if (name == "BYMONTH") {
            isHeld = ParseNumbers(value, 12, false, months);
        } else if (name == "BYMONTHDAY") {
            isHeld = ParseNumbers(value, 31, true, monthDays);
        } else if (name == "BYSETPOS") {
            isHeld = ParseNumbers(value, 5, true, positions) && positions.size() == 1;
        } else if (name == "WKST") {
            isHeld = ParseDays(value, weekStart) && weekStart.size() == 1;
        } else if (!part.empty()) {
            isHeld = false;
        }
        if (!isHeld) {
            problem = part;
            return false;
        }
    }
    Arrange(months);
    Arrange(monthDays);
    if (!positions.empty() && !TakePosition(*this, positions.front())) {
        problem = fmt::format("BYSETPOS={}", positions.front());
        return false;
    }
    if (!ArrangeDays(days)) {
        problem = "two weeks of one weekday";
        return false;
    }
    if (!weekStart.empty() && IsSplitByWeekStart(*this, weekStart.front().day)) {
        problem = fmt::format("WKST={}", kDays[static_cast<std::size_t>(weekStart.front().day)]);
        return false;
    }
    if (frequency == "YEARLY" && months.empty() && std::ranges::any_of(days, [](const Day& day) { return day.week; })) {
        problem = "a weekday of the year";
        return false;
    }
    return true;
}

std::string EventRule::Text() const
{
    if (frequency.empty())
        return {};
    std::string text = "FREQ=" + frequency;
    if (count != 0)
        text += fmt::format(";COUNT={}", count);
    else if (!until.empty())
        text += ";UNTIL=" + until;
    text += fmt::format(";INTERVAL={}", interval);
    std::vector<std::string> names;
    for (const Day& day : days)
        names.push_back(DayText(day));
    if (!days.empty())
        text += fmt::format(";BYDAY={}", fmt::join(names, ","));
    if (!months.empty())
        text += fmt::format(";BYMONTH={}", fmt::join(months, ","));
    if (!monthDays.empty())
        text += fmt::format(";BYMONTHDAY={}", fmt::join(monthDays, ","));
    return text;
}

void EventRule::EndInOwnTime(std::string_view zone)
{
    if (until.size() == 8)
        until += "T235959";
    else if (until.size() == 16)
        until = EventTimeText(ZoneTimeOf(ParseEventTime(until).value_or(EventTime()), zone));
}

void EventRule::EndInUtc(std::string_view zone)
{
    EndInOwnTime(zone); // also one in UTC: two times in UTC are one local time when the clocks go back
    if (const auto end = ParseEventTime(until))
        until = EventTimeText(UtcTimeOf(*end, zone)) + 'Z';
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
    const bool isFree =
        months.empty() && monthDays.empty() &&
        ((frequency == "DAILY" && days.empty()) || (frequency == "WEEKLY" && (interval == 1 || days.size() < 2)));
    for (Day& day : days)
        day.day = ((day.day + distance) % 7 + 7) % 7;
    return isFree && ArrangeDays(days);
}

std::string RuleInOwnTime(const std::string& text, std::string_view zone)
{
    EventRule rule;
    std::string problem;
    if (!rule.Parse(text, problem))
        return text;
    rule.EndInOwnTime(zone);
    return rule.Text();
}

} // namespace phnctl
