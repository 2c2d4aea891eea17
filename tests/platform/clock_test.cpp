// The test hooks of the stand-in: time that passes at once, and calls that fail when asked to.
#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include <phn_platform_test.h>

#include "platform/port_fixture.h"

namespace {

using platform_test::AdvanceClock;
using platform_test::AwaitBlocked;

TEST(Clock, EveryWaitWithATimeOutSeesTheNewTime)
{
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    DWORD waited = WAIT_FAILED;
    std::thread waiter([&] { waited = WaitForSingleObject(event, 15000); });
    std::thread sleeper([] { Sleep(3600000); });
    const ULONGLONG start = GetTickCount64();
    ASSERT_TRUE(AwaitBlocked(15000));
    ASSERT_TRUE(AwaitBlocked(3600000));
    AdvanceClock(14000);
    ASSERT_TRUE(AwaitBlocked(15000)); // not over yet
    AdvanceClock(3600000);
    waiter.join();
    sleeper.join();
    EXPECT_EQ(waited, WAIT_TIMEOUT);
    EXPECT_GE(GetTickCount64() - start, 3614000u);
    CloseHandle(event);
}

// The scale is read once, so it has a process of its own.
TEST(Clock, TheScaleAppliesToStatedTimes)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto sleepScaled = [] {
        setenv("PHNNRV_TIME_SCALE", "0.001", 1);
        const auto start = std::chrono::steady_clock::now();
        Sleep(60000);
        const auto slept = std::chrono::steady_clock::now() - start;
        std::exit(slept >= std::chrono::milliseconds(60) && slept < std::chrono::seconds(30) ? 0 : 1);
    };
    EXPECT_EXIT(sleepScaled(), testing::ExitedWithCode(0), "");
}

TEST_F(PortTest, ALongIntervalPassesAtOnceAndAReplyUnderWayIsNotCut)
{
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, {7000, 0, 0, 0, 0});
    std::array<char, 4> buffer{};
    Operation reading;
    DWORD got = 0;
    ASSERT_FALSE(ReadFile(port, buffer.data(), 4, nullptr, &reading.record));
    Send("OK");
    while (WaitForSingleObject(reading.record.hEvent, 0) == WAIT_TIMEOUT)
        AdvanceClock(7000);
    EXPECT_EQ(reading.Finish(port, &got), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(std::string(buffer.data(), got), "OK");

    ASSERT_FALSE(ReadFile(port, buffer.data(), 4, nullptr, &reading.record));
    for (const char* byte : {"a", "b", "c", "d"}) {
        Send(byte);
        AdvanceClock(6000); // the interval is counted from the last byte
    }
    EXPECT_EQ(reading.Finish(port, &got), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(std::string(buffer.data(), got), "abcd");
    CloseHandle(port);
}

TEST(Faults, ACallFailsWhenItIsAskedToAndThenRunsAgain)
{
    platform_test::FailCall("CreateEventA", ERROR_NO_SYSTEM_RESOURCES, 2, 2);
    for (const DWORD error : std::array<DWORD, 5>{0, 0, ERROR_NO_SYSTEM_RESOURCES, ERROR_NO_SYSTEM_RESOURCES, 0}) {
        SetLastError(ERROR_SUCCESS);
        const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        EXPECT_EQ(event == nullptr, error != 0);
        EXPECT_EQ(GetLastError(), error);
        CloseHandle(event);
    }
    EXPECT_EQ(platform_test::PendingFailures("CreateEventA"), 0u);
    platform_test::FailCall("ResetEvent", ERROR_INVALID_HANDLE);
    platform_test::ClearFailures();
    EXPECT_EQ(platform_test::PendingFailures("ResetEvent"), 0u);
    EXPECT_THROW(platform_test::FailCall("NoSuchCall", ERROR_SUCCESS), std::invalid_argument);
}

} // namespace
