#include "phnctl/events/rule.h"

#include "phnctl/text/content_line.h"
#include "phnctl/text/number.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <optional>

namespace phnctl {

namespace {

constexpr std::array<std::string_view, 7> kDays = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
constexpr std::size_t kLongestDays = 39; // characters of a BYDAY list that the library reads

// By their Frequency.
constexpr std::array<std::string_view, 5> kFrequencies = {"", "DAILY", "WEEKLY", "MONTHLY", "YEARLY"};

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

bool ParseCount(const std::string& text, unsigned& count)
{
    const auto number = ParseNumber(text, 0x7FFFFFFF);
    count = static_cast<unsigned>(number.value_or(0));
    return count != 0;
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

std::string DayText(const EventRule::Day& day)
{
    const auto name = kDays[static_cast<std::size_t>(day.day)];
    return day.week == 0 ? std::string(name) : fmt::format("{}{}", day.week, name);
}

class RuleParser
{
public:
    EventRule Parse(std::string_view text)
    {
        m_rule.written = text;
        for (const std::string& part : Split(UpperCase(text), ';')) {
            const std::size_t equals = std::min(part.find('='), part.size());
            if (!part.empty() && !Take(part.substr(0, equals), part.substr(std::min(equals + 1, part.size())))) {
                m_rule.problem = part;
                return std::move(m_rule);
            }
        }
        const bool isArranged = m_rule.Arrange();
        if (!m_positions.empty() && !TakePosition())
            m_rule.problem = fmt::format("BYSETPOS={}", m_positions.front());
        else if (!isArranged)
            m_rule.problem = "two weeks of one weekday";
        else if (!m_weekStart.empty() && IsSplitByWeekStart())
            m_rule.problem = fmt::format("WKST={}", DayText(m_weekStart.front()));
        else if (m_rule.frequency == Frequency::Yearly && m_rule.months.empty() &&
                 std::ranges::any_of(m_rule.days, [](const EventRule::Day& day) { return day.week; }))
            m_rule.problem = "a weekday of the year";
        return std::move(m_rule);
    }

private:
    bool Take(const std::string& name, const std::string& value)
    {
        if (name == "FREQ")
            return TakeFrequency(value);
        if (name == "COUNT")
            return ParseCount(value, m_rule.count);
        if (name == "INTERVAL")
            return ParseCount(value, m_rule.interval);
        if (name == "UNTIL")
            return TakeEnd(value);
        if (name == "BYDAY")
            return ParseDays(value, m_rule.days) && value.size() <= kLongestDays;
        if (name == "BYMONTH")
            return ParseNumbers(value, 12, false, m_rule.months);
        if (name == "BYMONTHDAY")
            return ParseNumbers(value, 31, true, m_rule.monthDays);
        if (name == "BYSETPOS")
            return ParseNumbers(value, 5, true, m_positions) && m_positions.size() == 1;
        return name == "WKST" && ParseDays(value, m_weekStart) && m_weekStart.size() == 1;
    }

    bool TakeFrequency(const std::string& value)
    {
        const auto found = std::find(kFrequencies.begin() + 1, kFrequencies.end(), value);
        if (found == kFrequencies.end())
            return false;
        m_rule.frequency = static_cast<Frequency>(found - kFrequencies.begin());
        return true;
    }

    // Of a year that the library takes, and with nothing else in it.
    bool TakeEnd(const std::string& value)
    {
        m_rule.until = value.starts_with("9999") ? std::nullopt // how some say that there is no end
                                                 : ParseStatedTime(value);
        return value.starts_with("9999") ||
               (m_rule.until && m_rule.until->time.year >= kFirstYear && StatedTimeText(*m_rule.until) == value);
    }

    // The second of all Tuesdays is the second Tuesday; of several weekdays there is no such short form.
    bool TakePosition()
    {
        const bool isInMonth = m_rule.frequency == Frequency::Monthly ||
                               (m_rule.frequency == Frequency::Yearly && m_rule.months.size() == 1);
        if (!isInMonth || !m_rule.monthDays.empty() || m_rule.days.size() != 1 || m_rule.days.front().week != 0)
            return false;
        m_rule.days.front().week = m_positions.front();
        return true;
    }

    // Every other week from Sunday is not every other week from Monday, as the handset counts them.
    bool IsSplitByWeekStart() const
    {
        const auto isBefore = [&](const EventRule::Day& day) { return day.day < m_weekStart.front().day; };
        return m_rule.frequency == Frequency::Weekly && m_rule.interval > 1 &&
               std::ranges::any_of(m_rule.days, isBefore) && !std::ranges::all_of(m_rule.days, isBefore);
    }

    EventRule m_rule;
    std::vector<int> m_positions;
    std::vector<EventRule::Day> m_weekStart;
};

} // namespace

EventRule ParseRule(std::string_view text)
{
    return RuleParser().Parse(text);
}

std::string EventRule::Text() const
{
    if (!problem.empty())
        return written;
    if (!Repeats())
        return {};
    std::string text = fmt::format("FREQ={}", kFrequencies[static_cast<std::size_t>(frequency)]);
    if (count != 0)
        text += fmt::format(";COUNT={}", count);
    else if (until)
        text += ";UNTIL=" + StatedTimeText(*until);
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

} // namespace phnctl
