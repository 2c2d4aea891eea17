#include "phnctl/event_rule.h"

#include "phnctl/content_line.h"
#include "phnctl/number.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <optional>

namespace phnctl {

namespace {

constexpr std::array<std::string_view, 7> kDays = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
constexpr const char* kDayNames[] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
constexpr const char* kMonthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                       "July",    "August",   "September", "October", "November", "December"};
constexpr std::size_t kLongestDays = 39; // characters of a BYDAY list that the library reads

struct Frequency
{
    std::string_view name;
    const char* one;  // "month"
    const char* each; // of an interval of 1
};
constexpr Frequency kFrequencies[] = {
    {"DAILY", "day", "every day"},
    {"WEEKLY", "week", "every week"},
    {"MONTHLY", "month", "every month"},
    {"YEARLY", "year", "every year"},
};

const Frequency* FrequencyOf(std::string_view name)
{
    const auto* found = std::ranges::find(kFrequencies, name, &Frequency::name);
    return found == std::end(kFrequencies) ? nullptr : found;
}

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
    if (rule.frequency != "MONTHLY" || rule.days.size() != 1 || rule.days.front().week != 0)
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

std::string DayText(const EventRule::Day& day)
{
    const auto name = kDays[static_cast<std::size_t>(day.day)];
    return day.week == 0 ? std::string(name) : fmt::format("{}{}", day.week, name);
}

std::string Ordinal(int number)
{
    constexpr const char* kWords[] = {"first", "second", "third", "fourth", "fifth"};
    if (number == -1)
        return "last";
    const int size = number < 0 ? -number : number;
    const std::string word = size <= 5 ? kWords[size - 1] : fmt::format("{}th", size);
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

} // namespace

bool EventRule::Parse(std::string_view text, std::string& problem)
{
    *this = {};
    std::vector<int> positions;
    for (const std::string& part : Split(UpperCase(text), ';')) {
        const std::size_t equals = std::min(part.find('='), part.size());
        const std::string name = part.substr(0, equals);
        const std::string value = part.substr(std::min(equals + 1, part.size()));
        bool isHeld = true;
        if (name == "FREQ") {
            frequency = value;
            isHeld = FrequencyOf(value);
        } else if (name == "COUNT" || name == "INTERVAL") {
            const auto number = ParseNumber(value, 0x7FFFFFFF);
            isHeld = number && *number != 0;
            (name == "COUNT" ? count : interval) = static_cast<unsigned>(number.value_or(0));
        } else if (name == "UNTIL") {
            until = value.size() == 8 ? value + "T235959Z" : value.size() == 15 ? value + 'Z' : value;
            isHeld = until.size() == 16;
        } else if (name == "BYDAY") {
            isHeld = ParseDays(value, days) && value.size() <= kLongestDays;
        } else if (name == "BYMONTH") {
            isHeld = ParseNumbers(value, 12, false, months);
        } else if (name == "BYMONTHDAY") {
            isHeld = ParseNumbers(value, 31, true, monthDays);
        } else if (name == "BYSETPOS") {
            isHeld = ParseNumbers(value, 5, true, positions) && positions.size() == 1;
        } else if (name != "WKST" && !part.empty()) {
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

std::string EventRule::Words() const
{
    const Frequency* const unit = FrequencyOf(frequency);
    if (!unit)
        return {};
    std::string words = interval == 1 ? unit->each : fmt::format("every {} {}s", interval, unit->one);
    const bool isByWeek = std::ranges::any_of(days, [](const Day& day) { return day.week != 0; });
    if (isByWeek && frequency == "MONTHLY" && interval == 1)
        words = fmt::format("every {} of the month", DaysInWords(days));
    else if (isByWeek)
        words += fmt::format(", on the {} of the month", DaysInWords(days));
    else if (AreWeekdays(days) && frequency == "WEEKLY" && interval == 1)
        words = "every weekday";
    else if (!days.empty())
        words += " on " + DaysInWords(days);
    std::vector<std::string> names;
    for (const int month : months)
        names.push_back(kMonthNames[month - 1]);
    if (frequency == "YEARLY" && months.size() == 1 && monthDays.size() == 1 && monthDays.front() > 0)
        words += fmt::format(" on {} {}", monthDays.front(), names.front());
    else if (!months.empty() || !monthDays.empty())
        words += (months.empty() ? "" : " in " + Listed(names)) +
                 (monthDays.empty() ? "" : " on " + MonthDaysInWords(monthDays));
    if (count != 0)
        words += count == 1 ? ", once" : fmt::format(", {} times", count);
    else if (!until.empty())
        words += fmt::format(" until {}-{}-{}", until.substr(0, 4), until.substr(4, 2), until.substr(6, 2));
    return words;
}

} // namespace phnctl
