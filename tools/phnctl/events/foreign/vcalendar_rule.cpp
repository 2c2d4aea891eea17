// The grammar of vCalendar 1.0's recurrence rules: a frequency with its interval, what it lists, and its end.
#include "phnctl/events/foreign/vcalendar.h"
#include "phnctl/text/number.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <iterator>
#include <sstream>

namespace phnctl {

namespace {

struct Form
{
    std::string_view letters;
    const char* frequency;
    const char* list; // what the items are; null: there are none
    unsigned largest; // number; 0: they are weekdays
};

constexpr Form kForms[] = {{"MP", "MONTHLY", "BYDAY", 0},   {"MD", "MONTHLY", "BYMONTHDAY", 31},
                           {"YM", "YEARLY", "BYMONTH", 12}, {"YD", "YEARLY", "BYYEARDAY", 366},
                           {"D", "DAILY", nullptr, 0},      {"W", "WEEKLY", "BYDAY", 0}};

std::optional<unsigned> Number(std::string_view text, unsigned largest)
{
    const auto number = ParseNumber(text, largest);
    return number ? std::optional(static_cast<unsigned>(*number)) : std::nullopt;
}

class Rule
{
public:
    // Empty: iCalendar cannot say it, or it is none.
    std::string Translate(const std::string& text)
    {
        std::istringstream stream(UpperCase(text));
        std::string word;
        if (!(stream >> word) || !TakeFrequency(word))
            return {};
        while (stream >> word)
            if (!TakeEnd(word) && !TakeItem(word))
                return {};
        if (!m_weeks.empty() && !m_hasWeekday)
            return {};
        std::string rule = fmt::format("FREQ={};INTERVAL={}", m_form->frequency, m_interval);
        if (!m_items.empty())
            rule += fmt::format(";{}={}", m_form->list, fmt::join(m_items, ","));
        return rule + m_end;
    }

private:
    bool TakeFrequency(std::string_view word)
    {
        m_form = std::ranges::find_if(kForms, [&](const Form& form) { return word.starts_with(form.letters); });
        if (m_form == std::end(kForms))
            return false;
        const auto interval = Number(word.substr(m_form->letters.size()), 9999);
        m_interval = interval.value_or(0);
        return m_interval != 0;
    }

    // "#10", "#0" for no end, or the last day. Midnight is the whole of that day.
    bool TakeEnd(const std::string& word)
    {
        if (word.starts_with('#')) {
            const auto count = Number(std::string_view(word).substr(1), 999999);
            m_end = count && *count != 0 ? fmt::format(";COUNT={}", *count) : "";
            return count.has_value();
        }
        auto end = ParseStatedTime(word);
        if (!end)
            return false;
        if (end->form == StatedTime::Form::Clock && SecondsOf(end->time) % 86400 == 0)
            end->form = StatedTime::Form::Day;
        m_end = ";UNTIL=" + StatedTimeText(*end);
        return true;
    }

    bool TakeItem(const std::string& word)
    {
        if (!m_form->list)
            return false;
        return m_form->largest == 0 ? TakeDay(word) : TakeNumber(word);
    }

    // "2+" and "1-" are the weeks of the weekdays behind them.
    bool TakeDay(const std::string& word)
    {
        constexpr std::string_view kDays[] = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
        if (std::ranges::find(kDays, word) == std::end(kDays))
            return m_form->letters == "MP" && TakeWeek(word);
        m_hasWeekday = true;
        if (m_form->letters != "MP")
            m_items.push_back(word);
        for (const std::string& week : m_weeks)
            m_items.push_back(week + word);
        return m_form->letters != "MP" || !m_weeks.empty();
    }

    bool TakeWeek(const std::string& word)
    {
        const auto week = Signed(word, 5);
        if (m_hasWeekday)
            m_weeks.clear();
        m_hasWeekday = false;
        m_weeks.push_back(week);
        return !week.empty();
    }

    bool TakeNumber(const std::string& word)
    {
        m_items.push_back(word == "LD" && m_form->letters == "MD" ? "-1" : Signed(word, m_form->largest));
        return !m_items.back().empty();
    }

    // "2+" or "2", and "1-", as "2" and "-1".
    static std::string Signed(const std::string& word, unsigned largest)
    {
        const bool isSigned = word.ends_with('+') || word.ends_with('-');
        const auto number = Number(std::string_view(word).substr(0, word.size() - isSigned), largest);
        return number && *number != 0 ? fmt::format("{}{}", word.ends_with('-') ? "-" : "", *number) : std::string();
    }

    const Form* m_form = nullptr;
    unsigned m_interval = 0;
    std::vector<std::string> m_items;
    std::vector<std::string> m_weeks;
    bool m_hasWeekday = false;
    std::string m_end = ";COUNT=2"; // if the rule says nothing of it
};

} // namespace

std::string RuleOfVCalendar(const std::string& text)
{
    const std::string rule = Rule().Translate(text);
    return rule.empty() ? text : rule;
}

} // namespace phnctl
