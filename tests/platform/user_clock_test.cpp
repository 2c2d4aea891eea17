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
        char16_t units[8]{};
        MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED | MB_USEGLYPHCHARS, bytes, -1, units, 8);
        EXPECT_EQ(units, expected) << variable;
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

// Of such a text, without its day of the week.
SYSTEMTIME Time(const char* text)
{
    SYSTEMTIME time{};
    sscanf(text, "%hu-%hu-%hu %hu:%hu:%hu.%hu", &time.wYear, &time.wMonth, &time.wDay, &time.wHour, &time.wMinute,
           &time.wSecond, &time.wMilliseconds);
    return time;
}

TEST(LocalTime, FollowsTheZonesRulesBothWays)
{
    constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";
    constexpr const char* kLeftOut = "2009-03-29 02:30:00.000 (0)";
    const struct
    {
        const char *zone, *utc, *local;
    } table[] = {
        {kBerlin, "2009-03-29 00:59:59.007 (0)", "2009-03-29 01:59:59.007 (0)"},
        {kBerlin, "2009-03-29 01:00:00.000 (0)", "2009-03-29 03:00:00.000 (0)"},
        {kBerlin, "2009-03-29 00:30:00.000 (0)", kLeftOut},
        {kBerlin, "2009-10-24 23:59:00.000 (6)", "2009-10-25 01:59:00.000 (0)"},
        {kBerlin, "2009-10-25 00:30:00.000 (0)", "2009-10-25 02:30:00.000 (0)"}, // passed twice
        {kBerlin, "2009-10-25 02:00:00.000 (0)", "2009-10-25 03:00:00.000 (0)"},
        {kBerlin, "2095-12-31 23:30:00.000 (6)", "2096-01-01 00:30:00.000 (0)"},
        {"AEST-10AEDT,M10.1.0,M4.1.0/3", "2009-04-04 14:00:00.000 (6)", "2009-04-05 01:00:00.000 (0)"},
        {"EST5EDT,M3.2.0,M11.1.0", "1996-02-29 04:00:00.000 (4)", "1996-02-28 23:00:00.000 (3)"},
        {"UTC0", "9999-12-31 23:59:59.000 (5)", "9999-12-31 23:59:59.000 (5)"},
    };
    SYSTEMTIME result{};
    for (const auto& [zone, utc, local] : table) {
        setenv("TZ", zone, 1);
        const SYSTEMTIME universal = Time(utc);
        const SYSTEMTIME there = Time(local);
        EXPECT_TRUE(TzSpecificLocalTimeToSystemTime(nullptr, &there, &result));
        EXPECT_EQ(Text(result), utc) << zone;
        EXPECT_TRUE(SystemTimeToTzSpecificLocalTime(nullptr, &universal, &result));
        if (local != kLeftOut) {
            EXPECT_EQ(Text(result), local) << zone;
        }
    }
    unsetenv("TZ");
    for (const char* text : {"2009-2-29 0:0", "2009-13-1 0:0", "2009-257-1 0:0", "2009-1-257 0:0", "2009-1-1 24:0"}) {
        const SYSTEMTIME wrong = Time(text);
        EXPECT_FALSE(SystemTimeToTzSpecificLocalTime(nullptr, &wrong, &result)) << text;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    }
}

} // namespace
