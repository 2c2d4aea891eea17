#include "simulator/handset/utc_time.h"

#include <array>
#include <cstdio>

namespace simulator {

using namespace std::chrono;

namespace {

// Moments count nanoseconds since 1970: within these years, so does the time between any two of them.
constexpr year kFirstYear{1970};
constexpr year kLastYear{2261};

} // namespace

std::string ToText(Moment moment)
{
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss time(floor<milliseconds>(moment - day));
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count()));
    return text.data();
}

std::optional<Moment> ParseMoment(std::string_view text)
{
    constexpr std::string_view kForm = "0000-00-00T00:00:00.000Z";
    std::array<unsigned, 7> numbers{};
    std::size_t number = 0;
    if (text.size() != kForm.size())
        return std::nullopt;
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (kForm[i] == '0' ? !isDigit : text[i] != kForm[i])
            return std::nullopt;
        if (isDigit)
            numbers[number] = numbers[number] * 10 + static_cast<unsigned>(text[i] - '0');
        else
            ++number;
    }
    const year_month_day date(year(static_cast<int>(numbers[0])), month(numbers[1]), day(numbers[2]));
    if (!date.ok() || date.year() < kFirstYear || date.year() > kLastYear)
        return std::nullopt;
    return sys_days(date) + hours(numbers[3]) + minutes(numbers[4]) + seconds(numbers[5]) + milliseconds(numbers[6]);
}

} // namespace simulator
