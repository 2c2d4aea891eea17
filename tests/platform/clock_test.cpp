// The test hooks of the stand-in: time that passes at once.
#include <array>
#include <cstdlib>

#include <phn_platform_test.h>

#include "platform/port_fixture.h"

using platform_test::AdvanceClock;

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
        Sleep(20);
        AdvanceClock(6000); // the interval is counted from the last byte
    }
    EXPECT_EQ(reading.Finish(port, &got), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(std::string(buffer.data(), got), "abcd");
    CloseHandle(port);
}

TEST(TickCount, BeginsWhereItIsToldAndASleepIsAsManyTicksInEveryScale)
{
    constexpr ULONGLONG kBeforeTheWrap = 4294967000;
    setenv("PHNNRV_TIME_SCALE", "0.1", 1); // too late behind other tests in this process
    setenv("PHNNRV_TICK_COUNT", "4294967000", 1);
    EXPECT_LT(GetTickCount64() - kBeforeTheWrap, 60000u);
    Sleep(200);
    AdvanceClock(300);
    EXPECT_GE(GetTickCount64() - kBeforeTheWrap, 500u);
    EXPECT_LT(GetTickCount64() - kBeforeTheWrap, 60000u);
}
