#include "phnctl/events/time.h"

#include "phnctl/text/number.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fmt/format.h>
#include <iterator>
#include <windows.h>

namespace phnctl {

namespace {

struct Zone
{
    std::string_view name;
    int hoursBehind;
};

constexpr Zone kZones[] = {{"EST", 5}, {"EDT", 4}, {"CST", 6},  {"CDT", 5},  {"MST", 7},   {"MDT", 6},
                           {"PST", 8}, {"PDT", 7}, {"AKST", 9}, {"AKDT", 8}, {"HAST", 10}, {"HADT", 9}};

unsigned Digits(std::string_view text, std::size_t at, std::size_t count)
{
    return static_cast<unsigned>(ParseNumber(text.substr(at, count), 9999).value_or(9999));
}

EventTime FromSystem(const SYSTEMTIME& time)
{
    return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond};
}

SYSTEMTIME ToSystem(const EventTime& time)
{
    SYSTEMTIME system{};
    system.wYear = static_cast<WORD>(time.year);
    system.wMonth = static_cast<WORD>(time.month);
    system.wDay = static_cast<WORD>(time.day);
    system.wHour = static_cast<WORD>(time.hour);
    system.wMinute = static_cast<WORD>(time.minute);
    system.wSecond = static_cast<WORD>(time.second);
    return system;
}

} // namespace

bool Exists(const EventTime& time)
{
    using namespace std::chrono;
    return time.year >= 0 && time.year <= 9998 && time.month <= 12 && time.day <= 31 && time.hour < 24 &&
           time.minute < 60 && time.second < 60 &&
           year_month_day(year(time.year), month(time.month), day(time.day)).ok();
}

std::optional<EventTime> ParseEventTime(std::string_view text)
{
    if (text.size() < 15 || text[8] != 'T')
        return std::nullopt;
    const EventTime time{static_cast<int>(Digits(text, 0, 4)),
                         Digits(text, 4, 2),
                         Digits(text, 6, 2),
                         Digits(text, 9, 2),
                         Digits(text, 11, 2),
                         Digits(text, 13, 2)};
    return Exists(time) ? std::optional(time) : std::nullopt;
}

std::string EventTimeText(const std::optional<EventTime>& time)
{
    return time ? fmt::format("{:04}{:02}{:02}T{:02}{:02}{:02}", time->year, time->month, time->day, time->hour,
                              time->minute, time->second)
                : "";
}

std::optional<StatedTime> ParseStatedTime(std::string_view text)
{
    const bool isDay = text.size() == 8;
    const auto time = isDay ? ParseEventTime(std::string(text) + "T000000") : ParseEventTime(text);
    using enum StatedTime::Form;
    return time ? std::optional<StatedTime>({*time, isDay ? Day : text.ends_with('Z') ? Utc : Clock}) : std::nullopt;
}

std::string StatedTimeText(const StatedTime& stated)
{
    const std::string text = EventTimeText(stated.time);
    using enum StatedTime::Form;
    return stated.form == Day ? text.substr(0, 8) : stated.form == Utc ? text + 'Z' : text;
}

std::int64_t SecondsOf(const EventTime& time)
{
    using namespace std::chrono;
    const sys_days today = year(time.year) / month(time.month) / day(time.day);
    return sys_seconds(today + hours(time.hour) + minutes(time.minute) + seconds(time.second))
        .time_since_epoch()
        .count();
}

EventTime TimeOf(std::int64_t secondsSince1970)
{
    using namespace std::chrono;
    const sys_seconds time{seconds(secondsSince1970)};
    const sys_days today = floor<days>(time);
    const year_month_day date(today);
    const auto clock = static_cast<unsigned>((time - today).count());
    return {static_cast<int>(date.year()),
            static_cast<unsigned>(date.month()),
            static_cast<unsigned>(date.day()),
            clock / 3600,
            clock / 60 % 60,
            clock % 60};
}

std::optional<int> HoursBehindUtc(std::string_view zone)
{
    const auto* found = std::ranges::find(kZones, zone, &Zone::name);
    if (found != std::end(kZones))
        return found->hoursBehind;
    return zone == kUtcZone ? std::optional<int>(0) : std::nullopt;
}

std::string NameOfZone(int hoursBehind)
{
    const auto* found = std::ranges::find(kZones, hoursBehind, &Zone::hoursBehind);
    return found == std::end(kZones) ? std::string() : std::string(found->name);
}

EventTime UtcTimeOf(const EventTime& time, std::string_view zone)
{
    if (const auto hoursBehind = HoursBehindUtc(zone))
        return TimeOf(SecondsOf(time) + std::int64_t{*hoursBehind} * 3600);
    const SYSTEMTIME local = ToSystem(time);
    SYSTEMTIME utc{};
    return TzSpecificLocalTimeToSystemTime(nullptr, &local, &utc) ? FromSystem(utc) : time;
}

EventTime ZoneTimeOf(const EventTime& utc, std::string_view zone)
{
    if (const auto hoursBehind = HoursBehindUtc(zone))
        return TimeOf(SecondsOf(utc) - std::int64_t{*hoursBehind} * 3600);
    const SYSTEMTIME system = ToSystem(utc);
    SYSTEMTIME local{};
    return SystemTimeToTzSpecificLocalTime(nullptr, &system, &local) ? FromSystem(local) : utc;
}

EventTime LocalTimeOf(const EventTime& time, std::string_view zone)
{
    return HoursBehindUtc(zone) ? ZoneTimeOf(UtcTimeOf(time, zone), "") : time;
}

EventTime LocalNow()
{
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return FromSystem(now);
}

std::string ShownDay(const EventTime& time)
{
    constexpr const char* kDays[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
    const std::int64_t days = SecondsOf(time) / 86400; // since a Thursday
    return fmt::format("{} {:04}-{:02}-{:02}", kDays[((days + 3) % 7 + 7) % 7], time.year, time.month, time.day);
}

std::string Shown(const EventTime& time)
{
    return fmt::format("{} {:02}:{:02}", ShownDay(time), time.hour, time.minute);
}

std::string IsoText(const EventTime& time, std::string_view zone)
{
    const std::int64_t minutes = (SecondsOf(time) - SecondsOf(UtcTimeOf(time, zone))) / 60;
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}{}{:02}:{:02}", time.year, time.month, time.day, time.hour,
                       time.minute, time.second, minutes < 0 ? '-' : '+', std::abs(minutes) / 60,
                       std::abs(minutes) % 60);
}

} // namespace phnctl
