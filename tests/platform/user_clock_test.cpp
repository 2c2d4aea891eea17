// Of the stand-in alone: window timers under the test's clock, glyphs in every code page, local time by TZ.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <tuple>

#include <phn_platform_test.h>

namespace {

using platform_test::AdvanceClock;

unsigned CountTimerMessages()
{
    MSG message{};
    unsigned count = 0;
    while (PeekMessageA(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE))
        count++;
    return count;
}

TEST(TimersByTheClock, AreDueOnTheirBeatAndDoNotPileUp)
{
    const UINT_PTR timer = SetTimer(nullptr, 0, 2000, nullptr);
    AdvanceClock(1500); // real time passes as well
    EXPECT_EQ(CountTimerMessages(), 0u);
    AdvanceClock(500);
    EXPECT_EQ(CountTimerMessages(), 1u);
    AdvanceClock(7000); // three beats and a half
    EXPECT_EQ(CountTimerMessages(), 1u);
    AdvanceClock(1000);
    EXPECT_EQ(CountTimerMessages(), 1u);
    std::thread clock([] {
        EXPECT_TRUE(platform_test::AwaitBlocked(60000));
        AdvanceClock(2000);
    });
    EXPECT_EQ(MsgWaitForMultipleObjects(0, nullptr, FALSE, 60000, QS_TIMER), WAIT_OBJECT_0);
    clock.join();
    EXPECT_EQ(CountTimerMessages(), 1u);
    EXPECT_TRUE(KillTimer(nullptr, timer));
    AdvanceClock(4000);
    EXPECT_EQ(CountTimerMessages(), 0u);
}

TEST(AnsiCodePage, IsTheVariablesAndHasGlyphsWhicheverItIs)
{
    const std::tuple<const char*, UINT, const char*, std::u16string> table[] = {
        {"1252", 1252, "\x01\x0D\xE9", u"\u263A\u266A\u00E9"},
        {"1251", 1251, "\x01\xE9", u"\u263A\u0439"},
        {"932", 932, "\x0A\x83\x41", u"\u25D9\u30A2"},
        {"65001", 65001, "\x0A\xC3\xA9", u"\u25D9\u00E9"},
        {"rubbish", 1252, "\xE9", u"\u00E9"},
        {"64999", 1252, "\xE9", u"\u00E9"},
    };
    for (const auto& [variable, codePage, bytes, expected] : table) {
        setenv("PHNNRV_ANSI_CODE_PAGE", variable, 1);
        EXPECT_EQ(GetACP(), codePage) << variable;
        std::u16string units(8, u'\0');
        const int length = MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED | MB_USEGLYPHCHARS, bytes, -1, units.data(), 8);
        ASSERT_GT(length, 0);
        EXPECT_EQ(units.substr(0, static_cast<std::size_t>(length) - 1), expected) << variable;
    }
    unsetenv("PHNNRV_ANSI_CODE_PAGE");
}

std::string Text(const SYSTEMTIME& time)
{
    char text[64];
    snprintf(text, sizeof text, "%u-%02u-%02u %02u:%02u:%02u.%03u (%u)", time.wYear, time.wMonth, time.wDay, time.wHour,
             time.wMinute, time.wSecond, time.wMilliseconds, time.wDayOfWeek);
    return text;
}

TEST(LocalTime, FollowsTheZonesRules)
{
    const std::tuple<const char*, SYSTEMTIME, const char*> table[] = {
        {"CET-1CEST,M3.5.0,M10.5.0/3", {2009, 3, 0, 29, 0, 59, 59, 7}, "2009-03-29 01:59:59.007 (0)"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", {2009, 3, 0, 29, 1, 0, 0, 0}, "2009-03-29 03:00:00.000 (0)"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", {2095, 12, 0, 31, 23, 30, 0, 0}, "2096-01-01 00:30:00.000 (0)"},
        {"EST5EDT,M3.2.0,M11.1.0", {1996, 2, 0, 29, 4, 0, 0, 0}, "1996-02-28 23:00:00.000 (3)"},
    };
    SYSTEMTIME local{};
    for (const auto& [zone, utc, expected] : table) {
        setenv("TZ", zone, 1);
        EXPECT_TRUE(SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local));
        EXPECT_EQ(Text(local), expected) << zone;
    }
    for (const SYSTEMTIME& wrong : {SYSTEMTIME{2009, 2, 0, 29, 0, 0, 0, 0}, SYSTEMTIME{2009, 13, 0, 1, 0, 0, 0, 0},
                                    SYSTEMTIME{2009, 0, 0, 1, 0, 0, 0, 0}, SYSTEMTIME{2009, 257, 0, 1, 0, 0, 0, 0},
                                    SYSTEMTIME{2009, 1, 0, 257, 0, 0, 0, 0}, SYSTEMTIME{2009, 1, 0, 1, 24, 0, 0, 0}}) {
        EXPECT_FALSE(SystemTimeToTzSpecificLocalTime(nullptr, &wrong, &local));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    }
    unsetenv("TZ");
}

TEST(LocalTime, IsTurnedBackIntoUtc)
{
    constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";
    const std::tuple<const char*, SYSTEMTIME, const char*> table[] = {
        {kBerlin, {2009, 3, 0, 29, 1, 59, 59, 7}, "2009-03-29 00:59:59.007 (0)"},
        {kBerlin, {2009, 3, 0, 29, 2, 30, 0, 0}, "2009-03-29 00:30:00.000 (0)"}, // left out
        {kBerlin, {2009, 3, 0, 29, 3, 0, 0, 0}, "2009-03-29 01:00:00.000 (0)"},
        {kBerlin, {2009, 10, 0, 25, 1, 59, 0, 0}, "2009-10-24 23:59:00.000 (6)"},
        {kBerlin, {2009, 10, 0, 25, 2, 30, 0, 0}, "2009-10-25 00:30:00.000 (0)"}, // passed twice
        {kBerlin, {2009, 10, 0, 25, 3, 0, 0, 0}, "2009-10-25 02:00:00.000 (0)"},
        {"AEST-10AEDT,M10.1.0,M4.1.0/3", {2009, 4, 0, 5, 1, 0, 0, 0}, "2009-04-04 14:00:00.000 (6)"},
        {"EST5EDT,M3.2.0,M11.1.0", {1996, 2, 0, 28, 23, 0, 0, 0}, "1996-02-29 04:00:00.000 (4)"},
        {"UTC0", {9999, 12, 0, 31, 23, 59, 59, 0}, "9999-12-31 23:59:59.000 (5)"},
    };
    SYSTEMTIME utc{};
    for (const auto& [zone, local, expected] : table) {
        setenv("TZ", zone, 1);
        EXPECT_TRUE(TzSpecificLocalTimeToSystemTime(nullptr, &local, &utc));
        EXPECT_EQ(Text(utc), expected) << zone;
    }
    const SYSTEMTIME wrong{2009, 2, 0, 29, 0, 0, 0, 0};
    EXPECT_FALSE(TzSpecificLocalTimeToSystemTime(nullptr, &wrong, &utc));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    unsetenv("TZ");
}

} // namespace
