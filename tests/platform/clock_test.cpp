// Time in the stand-in: at the scale that the environment states, and moved on by a test.
#include <array>
#include <chrono>
#include <cstdlib>

#include <phn_platform_test.h>

#include "platform/port_fixture.h"

namespace {

using platform_test::AdvanceClock;

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

} // namespace
