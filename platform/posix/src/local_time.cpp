// The time of day. Zone rules are the C library's, by the TZ variable, which is looked at again at every call.
#include <time.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>

#include "win32_call.h"

using namespace platform;

namespace {

SYSTEMTIME SystemTimeOf(const tm& time, long milliseconds)
{
    return {.wYear = static_cast<WORD>(time.tm_year + 1900),
            .wMonth = static_cast<WORD>(time.tm_mon + 1),
            .wDayOfWeek = static_cast<WORD>(time.tm_wday),
            .wDay = static_cast<WORD>(time.tm_mday),
            .wHour = static_cast<WORD>(time.tm_hour),
            .wMinute = static_cast<WORD>(time.tm_min),
            .wSecond = static_cast<WORD>(time.tm_sec),
            .wMilliseconds = static_cast<WORD>(milliseconds)};
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

tm BrokenDown(time_t seconds)
{
    tm local{};
    if (!localtime_r(&seconds, &local))
        ThrowErrno();
    return local;
}

SYSTEMTIME LocalTimeOf(time_t seconds, long milliseconds)
{
    FollowZone();
    return SystemTimeOf(BrokenDown(seconds), milliseconds);
}

// The seconds since 1970 of a UTC time, or of a local one taken for UTC; throws ERROR_INVALID_PARAMETER for a date or a
// time that does not exist.
time_t SecondsOf(const SYSTEMTIME& utc)
{
    tm time{};
    time.tm_year = utc.wYear - 1900;
    time.tm_mon = utc.wMonth - 1;
    time.tm_mday = utc.wDay;
    time.tm_hour = utc.wHour;
    time.tm_min = utc.wMinute;
    time.tm_sec = utc.wSecond;
    const bool inRange = utc.wYear >= 1601 && utc.wYear <= 30827 && utc.wHour < 24 && utc.wMinute < 60 &&
                         utc.wSecond < 60 && utc.wMilliseconds < 1000;
    const time_t seconds = timegm(&time); // which normalises a 30 February
    if (!inRange || time.tm_mon != utc.wMonth - 1 || time.tm_mday != utc.wDay)
        throw Win32Error{ERROR_INVALID_PARAMETER};
    return seconds;
}

// The UTC seconds of a local time that was taken for UTC. The offsets a day before and after are all that it can have.
time_t FromLocal(time_t local)
{
    constexpr time_t kDay = 24 * 60 * 60;
    FollowZone();
    const auto [smaller, larger] =
        std::minmax({BrokenDown(local - kDay).tm_gmtoff, BrokenDown(local + kDay).tm_gmtoff});
    const time_t seconds = local - larger;
    const bool isSmaller = smaller != larger && BrokenDown(seconds).tm_gmtoff != larger &&
                           BrokenDown(local - smaller).tm_gmtoff == smaller;
    return isSmaller ? local - smaller : seconds;
}

} // namespace

void WINAPI GetLocalTime(LPSYSTEMTIME lpSystemTime)
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    *lpSystemTime = LocalTimeOf(now.tv_sec, now.tv_nsec / 1'000'000);
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
        const time_t seconds = FromLocal(SecondsOf(*lpLocalTime));
        tm utc{};
        if (!gmtime_r(&seconds, &utc))
            ThrowErrno();
        *lpUniversalTime = SystemTimeOf(utc, lpLocalTime->wMilliseconds);
        return TRUE;
    });
}
