#include "simulator/phone/date_time.h"

#include <charconv>
#include <cstddef>
#include <limits>

namespace simulator {
namespace {

void AppendPadded(std::string& text, unsigned value, std::size_t width, char separator)
{
    const std::string digits = std::to_string(value);
    if (digits.size() < width)
        text.append(width - digits.size(), '0');
    text.append(digits);
    if (separator != '\0')
        text.push_back(separator);
}

// Takes a number and the separator behind it; '\0' stands for the end of the text.
template <typename T>
bool TakeNumber(std::string_view& text, T& value, char separator)
{
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number > std::numeric_limits<T>::max())
        return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    value = static_cast<T>(number);
    if (separator == '\0' || text.empty())
        return separator == '\0' && text.empty();
    const bool isThere = text.front() == separator;
    text.remove_prefix(1);
    return isThere;
}

} // namespace

std::string ToString(const DateTime& time)
{
    if (time == DateTime{})
        return "-";
    std::string text;
    AppendPadded(text, time.year, 4, '-');
    AppendPadded(text, time.month, 2, '-');
    AppendPadded(text, time.day, 2, 'T');
    AppendPadded(text, time.hour, 2, ':');
    AppendPadded(text, time.minute, 2, ':');
    AppendPadded(text, time.second, 2, '\0');
    return text;
}

std::optional<DateTime> ParseDateTime(std::string_view text)
{
    DateTime time;
    if (text == "-")
        return time;
    const bool isGood = TakeNumber(text, time.year, '-') && TakeNumber(text, time.month, '-') &&
                        TakeNumber(text, time.day, 'T') && TakeNumber(text, time.hour, ':') &&
                        TakeNumber(text, time.minute, ':') && TakeNumber(text, time.second, '\0');
    return isGood ? std::optional(time) : std::nullopt;
}

} // namespace simulator
