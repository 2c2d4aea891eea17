// Serial ports: how reads and writes end, by bytes, by time and by the caller's will.
#include <array>
#include <chrono>

#include "platform/port_fixture.h"

namespace {

constexpr COMMTIMEOUTS kDiagnostic{10, 10, 1000, 2, 10};
constexpr COMMTIMEOUTS kNone{0, 0, 0, 0, 0};

struct Reading
{
    std::array<char, 50001> buffer{};
    Operation operation;

    // Starts an overlapped read; its error code.
    DWORD Start(HANDLE port, DWORD size = 50001)
    {
        return ReadFile(port, buffer.data(), size, nullptr, &operation.record) ? DWORD{ERROR_SUCCESS} : GetLastError();
    }
    std::string Finish(HANDLE port)
    {
        DWORD got = 0;
        EXPECT_EQ(operation.Finish(port, &got), DWORD{ERROR_SUCCESS});
        return {buffer.data(), got};
    }
};

TEST_F(PortTest, AnOverlappedReadEndsBySilenceAfterItsLastByte)
{
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kDiagnostic);
    Reading reading;
    ASSERT_EQ(reading.Start(port), DWORD{ERROR_IO_PENDING});
    EXPECT_EQ(WaitForSingleObject(reading.operation.record.hEvent, 20), WAIT_TIMEOUT);
    const std::string reply(9000, '\x7E'); // more than a terminal holds at once
    for (std::size_t at = 0; at < reply.size(); at += 4000)
        Send(reply.substr(at, 4000));
    EXPECT_EQ(WaitForSingleObject(reading.operation.record.hEvent, 15000), WAIT_OBJECT_0);
    EXPECT_EQ(reading.Finish(port), reply);
    CloseHandle(port);
}

TEST_F(PortTest, AReadWhoseEventNobodyWaitsForIsOverWhenItsBytesHaveCome)
{
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kNone);
    for (const bool waitsFirst : {false, true, false}) {
        Reading reading;
        ASSERT_EQ(reading.Start(port, 4), DWORD{ERROR_IO_PENDING});
        if (waitsFirst) {
            EXPECT_EQ(WaitForSingleObject(reading.operation.record.hEvent, 20), WAIT_TIMEOUT);
        }
        Send("OK\r\n");
        EXPECT_EQ(reading.Finish(port), "OK\r\n");
    }
    CloseHandle(port);
}

TEST_F(PortTest, ABlockingReadEndsByAFullBufferOrItsTotal)
{
    const HANDLE port = Open(0, {0, 1, 20, 0, 0});
    std::array<char, 10> buffer{};
    DWORD got = 0;
    Send("OK\r\n");
    EXPECT_TRUE(ReadFile(port, buffer.data(), 4, &got, nullptr));
    EXPECT_EQ(std::string(buffer.data(), got), "OK\r\n");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(ReadFile(port, buffer.data(), 10, &got, nullptr));
    EXPECT_EQ(got, 0u);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(29)); // 10 bytes * 1 ms + 20 ms
    COMMTIMEOUTS none = kNone;
    SetCommTimeouts(port, &none);
    ClearCommError(port, nullptr, nullptr); // nothing is there
    Send("AT");
    Sleep(20); // whatever tells of their coming has done so
    EXPECT_TRUE(ReadFile(port, buffer.data(), 2, &got, nullptr));
    EXPECT_EQ(std::string(buffer.data(), got), "AT");
    CloseHandle(port);
}

TEST_F(PortTest, EveryBytePassesAsItIs)
{
    std::string everyByte;
    for (int byte = 0; byte < 256; byte++)
        everyByte += static_cast<char>(byte);
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kDiagnostic);
    Operation writing;
    DWORD written = 0;
    WriteFile(port, everyByte.data(), 256, nullptr, &writing.record);
    EXPECT_EQ(writing.Finish(port, &written), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(written, 256u);
    EXPECT_EQ(Receive(256), everyByte);
    Reading reading;
    Send(everyByte);
    reading.Start(port, 256);
    EXPECT_EQ(reading.Finish(port), everyByte);
    CloseHandle(port);
}

TEST_F(PortTest, ACancelledReadIsOverAndLeavesThePortUsable)
{
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kNone);
    Reading reading;
    DWORD got = 0;
    ASSERT_EQ(reading.Start(port), DWORD{ERROR_IO_PENDING});
    EXPECT_TRUE(CancelIoEx(port, &reading.operation.record));
    EXPECT_EQ(reading.operation.Finish(port, &got), DWORD{ERROR_OPERATION_ABORTED});
    ASSERT_EQ(reading.Start(port, 5), DWORD{ERROR_IO_PENDING});
    Send("again");
    EXPECT_EQ(reading.Finish(port), "again");
    CloseHandle(port);
}

TEST_F(PortTest, APurgeForgetsWhatWasReceivedAndCounted)
{
    const HANDLE port = Open(0, {10, 0, 50, 0, 0});
    Send("stale");
    COMSTAT status{};
    DWORD got = 0;
    for (int turn = 0; status.cbInQue < 5 && turn < 5000; ++turn, Sleep(1))
        ASSERT_TRUE(ClearCommError(port, &got, &status));
    std::array<char, 8> buffer{};
    EXPECT_TRUE(ReadFile(port, buffer.data(), 2, &got, nullptr)); // the stand-in takes all of them
    Send("more");
    for (int turn = 0; status.cbInQue < 7 && turn < 5000; ++turn, Sleep(1))
        ASSERT_TRUE(ClearCommError(port, &got, &status));
    EXPECT_EQ(status.cbInQue, 7u);
    EXPECT_TRUE(PurgeComm(port, PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR));
    EXPECT_TRUE(ReadFile(port, buffer.data(), 8, &got, nullptr));
    EXPECT_EQ(std::string(buffer.data(), got), "");
    CloseHandle(port);
}

} // namespace
