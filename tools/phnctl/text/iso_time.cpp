#include "phnctl/text/iso_time.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <fmt/chrono.h>

namespace phnctl {

namespace {

// By how many seconds a local time is ahead of UTC.
std::int64_t OffsetOf(std::tm local, std::chrono::year_month_day date)
{
    local.tm_isdst = -1;
    const std::int64_t asUtc = std::int64_t{std::chrono::sys_days(date).time_since_epoch().count()} * 86400 +
                               std::int64_t{local.tm_hour} * 3600 + std::int64_t{local.tm_min} * 60 + local.tm_sec;
    return asUtc - std::int64_t{std::mktime(&local)};
}

} // namespace

std::optional<std::string> IsoTime(const LocalTime& time)
{
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(time[0])), std::chrono::month(time[1]),
                                           std::chrono::day(time[2])};
    if (!date.ok() || time[3] > 23 || time[4] > 59 || time[5] > 59)
        return std::nullopt;
    std::tm local{};
    local.tm_year = static_cast<int>(time[0]) - 1900;
    local.tm_mon = static_cast<int>(time[1]) - 1;
    local.tm_mday = static_cast<int>(time[2]);
    local.tm_hour = static_cast<int>(time[3]);
    local.tm_min = static_cast<int>(time[4]);
    local.tm_sec = static_cast<int>(time[5]);
    const std::int64_t minutes = OffsetOf(local, date) / 60;
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}{}{:02}:{:02}", time[0], time[1], time[2], time[3], time[4],
                       time[5], minutes < 0 ? '-' : '+', std::abs(minutes) / 60, std::abs(minutes) % 60);
}

std::string IsoTime(std::time_t time)
{
    const std::tm local = fmt::localtime(time);
    const auto number = [](int value) { return static_cast<unsigned>(value); };
    return IsoTime(LocalTime{number(local.tm_year + 1900), number(local.tm_mon + 1), number(local.tm_mday),
                             number(local.tm_hour), number(local.tm_min), number(local.tm_sec)})
        .value_or("");
}

} // namespace phnctl
