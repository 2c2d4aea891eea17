#include "calendar/local_time.h"

#include <chrono>
#include <limits>

#include <windows.h>

namespace {

using namespace std::chrono;

constexpr int64_t kNoTime = -1;

constexpr bool IsTime(int64_t nSeconds)
{
    return nSeconds > 0 && nSeconds <= std::numeric_limits<int32_t>::max();
}

// A UTC time, or a local one, by the calendar alone.
int64_t ToSeconds(const SYSTEMTIME& Time)
{
    const sys_days Day = year{Time.wYear} / month{Time.wMonth} / day{Time.wDay};
    return (Day + hours{Time.wHour} + minutes{Time.wMinute} + seconds{Time.wSecond}).time_since_epoch().count();
}

SYSTEMTIME ToSystemTime(int64_t nSeconds)
{
    const sys_seconds Time{seconds{nSeconds}};
    const sys_days Day = floor<days>(Time);
    const year_month_day Date{Day};
    const hh_mm_ss<seconds> Clock{Time - Day};
    SYSTEMTIME System{};
    System.wYear = static_cast<WORD>(static_cast<int>(Date.year()));
    System.wMonth = static_cast<WORD>(static_cast<unsigned>(Date.month()));
    System.wDay = static_cast<WORD>(static_cast<unsigned>(Date.day()));
    System.wHour = static_cast<WORD>(Clock.hours().count());
    System.wMinute = static_cast<WORD>(Clock.minutes().count());
    System.wSecond = static_cast<WORD>(Clock.seconds().count());
    return System;
}

int64_t LocalToSeconds(const SYSTEMTIME& Local)
{
    SYSTEMTIME Utc{};
    if (!TzSpecificLocalTimeToSystemTime(nullptr, &Local, &Utc))
        return kNoTime;
    const int64_t nSeconds = ToSeconds(Utc);
    return IsTime(nSeconds) ? nSeconds : kNoTime;
}

} // namespace

int64_t LocalToSeconds(const SCalDate& Date)
{
    const sys_days Month = year{Date.nYear} / month{static_cast<unsigned>(Date.nMonth)} / 1;
    const sys_seconds Time =
        Month + days{Date.nDay - 1} + hours{Date.nHour} + minutes{Date.nMinute} + seconds{Date.nSecond};
    return LocalToSeconds(ToSystemTime(Time.time_since_epoch().count()));
}

int64_t LocalToSeconds(const DEV_DATE_TIME& tmLocal)
{
    if (!(year{tmLocal.wYear} / tmLocal.byMonth / tmLocal.byDay).ok())
        return kNoTime; // not every system refuses 29 February of any year
    SYSTEMTIME Local{};
    Local.wYear = tmLocal.wYear;
    Local.wMonth = tmLocal.byMonth;
    Local.wDay = tmLocal.byDay;
    Local.wHour = tmLocal.byHour;
    Local.wMinute = tmLocal.byMinute;
    Local.wSecond = tmLocal.wSecond;
    return LocalToSeconds(Local);
}

bool SecondsToLocal(int64_t nSeconds, DEV_DATE_TIME* ptmLocal)
{
    if (!IsTime(nSeconds))
        return false;
    const SYSTEMTIME Utc = ToSystemTime(nSeconds);
    SYSTEMTIME Local{};
    if (!SystemTimeToTzSpecificLocalTime(nullptr, &Utc, &Local))
        return false;
    *ptmLocal = {.byHour = static_cast<uint8_t>(Local.wHour),
                 .byMinute = static_cast<uint8_t>(Local.wMinute),
                 .wSecond = Local.wSecond,
                 .byDay = static_cast<uint8_t>(Local.wDay),
                 .byMonth = static_cast<uint8_t>(Local.wMonth),
                 .wYear = Local.wYear};
    return true;
}
