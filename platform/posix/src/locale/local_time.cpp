// The time of day. Zone rules are the C library's, by the TZ variable, which is looked at again at every call.
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>

#include "base/win32_call.h"

using namespace platform;

namespace {

// A time by the calendar alone, without a zone.
SYSTEMTIME SystemTimeOf(time_t seconds, WORD milliseconds)
{
    using namespace std::chrono;
    const sys_seconds time{std::chrono::seconds{seconds}};
    const sys_days today = floor<days>(time);
    const year_month_day date{today};
    const hh_mm_ss clock{time - today};
    return {.wYear = static_cast<WORD>(static_cast<int>(date.year())),
            .wMonth = static_cast<WORD>(static_cast<unsigned>(date.month())),
            .wDayOfWeek = static_cast<WORD>(weekday{today}.c_encoding()),
            .wDay = static_cast<WORD>(static_cast<unsigned>(date.day())),
            .wHour = static_cast<WORD>(clock.hours().count()),
            .wMinute = static_cast<WORD>(clock.minutes().count()),
            .wSecond = static_cast<WORD>(clock.seconds().count()),
            .wMilliseconds = milliseconds};
}

// The seconds since 1970 of such a time; throws ERROR_INVALID_PARAMETER for a date or a time that does not exist.
time_t SecondsOf(const SYSTEMTIME& time)
{
    using namespace std::chrono;
    const year_month_day date = year{time.wYear} / month{time.wMonth} / day{time.wDay};
    const bool exists = time.wYear >= 1601 && time.wYear <= 30827 && time.wMonth <= 12 && time.wDay <= 31 &&
                        date.ok() && time.wHour < 24 && time.wMinute < 60 && time.wSecond < 60 &&
                        time.wMilliseconds < 1000;
    if (!exists)
        throw Win32Error{ERROR_INVALID_PARAMETER};
    const sys_seconds point = sys_days{date} + hours{time.wHour} + minutes{time.wMinute} + seconds{time.wSecond};
    return point.time_since_epoch().count();
}

// tzset looks at the zone's file at every call; it is called when TZ has changed.
void FollowZone()
{
    static auto& followed = *new std::string;
    static constinit std::mutex mutex;
    const char* const named = std::getenv("TZ");
    const std::string_view zone = named ? named : "the system's";
    const std::lock_guard guard(mutex);
    if (followed == zone)
        return;
    followed = zone;
    tzset();
}

// What the zone adds to UTC at a time.
time_t OffsetAt(time_t seconds)
{
    tm local{};
    if (!localtime_r(&seconds, &local))
        ThrowErrno();
    return local.tm_gmtoff;
}

SYSTEMTIME LocalTimeOf(time_t seconds, WORD milliseconds)
{
    FollowZone();
    return SystemTimeOf(seconds + OffsetAt(seconds), milliseconds);
}

// The UTC seconds of a local time, given as if it were UTC. The offsets a day before and after are all that it can
// have.
time_t FromLocal(time_t local)
{
    constexpr time_t kDay = time_t{24} * 60 * 60;
    FollowZone();
    const auto [smaller, larger] = std::minmax({OffsetAt(local - kDay), OffsetAt(local + kDay)});
    const time_t seconds = local - larger;
    const bool isSmaller = smaller != larger && OffsetAt(seconds) != larger && OffsetAt(local - smaller) == smaller;
    return isSmaller ? local - smaller : seconds;
}

} // namespace

// A thread asks for the zone once in a second.
void WINAPI GetLocalTime(LPSYSTEMTIME lpSystemTime)
{
    struct Known
    {
        time_t second = -1;
        SYSTEMTIME local{};
    };
    static thread_local constinit Known known;
    timespec now{};
    clock_gettime(CLOCK_REALTIME_COARSE, &now); // as exact as the time on Windows is
    if (now.tv_sec != known.second)
        known = {now.tv_sec, LocalTimeOf(now.tv_sec, 0)};
    *lpSystemTime = known.local;
    lpSystemTime->wMilliseconds = static_cast<WORD>(now.tv_nsec / 1'000'000);
}

BOOL WINAPI SystemTimeToTzSpecificLocalTime(const TIME_ZONE_INFORMATION* lpTimeZoneInformation,
                                            const SYSTEMTIME* lpUniversalTime, LPSYSTEMTIME lpLocalTime)
{
    return Win32Call(Call::SystemTimeToTzSpecificLocalTime, FALSE, [&] {
        if (!lpUniversalTime || !lpLocalTime)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        if (lpTimeZoneInformation)
            throw Win32Error{ERROR_NOT_SUPPORTED};
        *lpLocalTime = LocalTimeOf(SecondsOf(*lpUniversalTime), lpUniversalTime->wMilliseconds);
        return TRUE;
    });
}

BOOL WINAPI TzSpecificLocalTimeToSystemTime(const TIME_ZONE_INFORMATION* lpTimeZoneInformation,
                                            const SYSTEMTIME* lpLocalTime, LPSYSTEMTIME lpUniversalTime)
{
    return Win32Call(Call::TzSpecificLocalTimeToSystemTime, FALSE, [&] {
        if (!lpLocalTime || !lpUniversalTime)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        if (lpTimeZoneInformation)
            throw Win32Error{ERROR_NOT_SUPPORTED};
        *lpUniversalTime = SystemTimeOf(FromLocal(SecondsOf(*lpLocalTime)), lpLocalTime->wMilliseconds);
        return TRUE;
    });
}
