// Of the stand-in alone: timers under the test's clock, the code page's variable, local time by TZ.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <tuple>

#include <phn_platform_test.h>

namespace {

using platform_test::AdvanceClock;

TEST(TimersByTheClock, AreDueOnTheirBeatAndDoNotPileUp)
{
    const auto messages = [] {
        MSG message{};
        unsigned count = 0;
        while (PeekMessageA(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE))
            count++;
        return count;
    };
    const UINT_PTR timer = SetTimer(nullptr, 0, 2000, nullptr);
    AdvanceClock(1500); // real time passes as well
    EXPECT_EQ(messages(), 0u);
    AdvanceClock(7500); // four beats and a half
    EXPECT_EQ(messages(), 1u);
    AdvanceClock(1000);
    EXPECT_EQ(messages(), 1u);
    std::thread clock([] {
        EXPECT_TRUE(platform_test::AwaitBlocked(60000));
        AdvanceClock(2000);
    });
    EXPECT_EQ(MsgWaitForMultipleObjects(0, nullptr, FALSE, 60000, QS_TIMER), WAIT_OBJECT_0);
    clock.join();
    EXPECT_TRUE(KillTimer(nullptr, timer));
    EXPECT_EQ(messages(), 0u);
}

TEST(AnsiCodePage, IsTheUsualOneIfTheVariableNamesNone)
{
    for (const char* named : {"rubbish", "64999", ""}) {
        platform_test::NameAnsiCodePage(named);
        EXPECT_EQ(GetACP(), 1252u) << named;
    }
    platform_test::NameAnsiCodePage(nullptr);
}

std::string Text(const SYSTEMTIME& time)
{
    char text[64];
    snprintf(text, sizeof text, "%u-%02u-%02u %02u:%02u:%02u.%03u (%u)", time.wYear, time.wMonth, time.wDay, time.wHour,
             time.wMinute, time.wSecond, time.wMilliseconds, time.wDayOfWeek);
    return text;
}

TEST(LocalTime, FollowsTheZonesRulesBothWays)
{
    constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";
    // In UTC and local (year, month, day of the week, day, hour and so on), and whether a clock there shows it.
    const std::tuple<const char*, SYSTEMTIME, SYSTEMTIME, bool> table[] = {
        {kBerlin, {2009, 3, 0, 29, 1, 0, 0, 7}, {2009, 3, 0, 29, 3, 0, 0, 7}, true},
        {kBerlin, {2009, 3, 0, 29, 0, 30, 0, 0}, {2009, 3, 0, 29, 2, 30, 0, 0}, false},
        {kBerlin, {2009, 10, 0, 25, 0, 30, 0, 0}, {2009, 10, 0, 25, 2, 30, 0, 0}, true}, // passed twice
        {kBerlin, {2095, 12, 6, 31, 23, 30, 0, 0}, {2096, 1, 0, 1, 0, 30, 0, 0}, true},
    };
    SYSTEMTIME result{};
    for (const auto& [zone, utc, local, exists] : table) {
        setenv("TZ", zone, 1);
        EXPECT_TRUE(TzSpecificLocalTimeToSystemTime(nullptr, &local, &result));
        EXPECT_EQ(Text(result), Text(utc)) << zone;
        EXPECT_TRUE(SystemTimeToTzSpecificLocalTime(nullptr, &utc, &result));
        EXPECT_EQ(Text(result) == Text(local), exists) << zone << ' ' << Text(result);
    }
    unsetenv("TZ");
    for (const SYSTEMTIME& wrong : {SYSTEMTIME{2009, 2, 0, 29, 0, 0, 0, 0},
                                    {2009, 257, 0, 1, 0, 0, 0, 0},
                                    {2009, 1, 0, 257, 0, 0, 0, 0},
                                    {2009, 1, 0, 1, 24, 0, 0, 0}})
        EXPECT_FALSE(SystemTimeToTzSpecificLocalTime(nullptr, &wrong, &result)) << Text(wrong);
}

} // namespace
