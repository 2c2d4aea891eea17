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
};

TEST_F(PortTest, AnOverlappedReadEndsBySilenceAfterItsLastByte)
{
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kDiagnostic);
    Reading reading;
    ASSERT_EQ(reading.Start(port), DWORD{ERROR_IO_PENDING});
    DWORD got = 0;
    EXPECT_FALSE(GetOverlappedResult(port, &reading.operation.record, &got, FALSE));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_IO_INCOMPLETE});
    EXPECT_EQ(WaitForSingleObject(reading.operation.record.hEvent, 20), WAIT_TIMEOUT);

    const std::string reply(9000, '\x7E'); // more than a terminal holds at once
    Send(reply.substr(0, 4000));
    Send(reply.substr(4000, 4000));
    Send(reply.substr(8000));
    EXPECT_EQ(WaitForSingleObject(reading.operation.record.hEvent, 15000), WAIT_OBJECT_0);
    EXPECT_TRUE(GetOverlappedResult(port, &reading.operation.record, &got, FALSE));
    EXPECT_EQ(std::string(reading.buffer.data(), got), reply);
    CloseHandle(port);
}

TEST_F(PortTest, AFullBufferEndsAReadAtOnceAndTheRestWaits)
{
    const HANDLE port = Open(0, kNone);
    Send("OK\r\nREST");
    std::array<char, 16> buffer{};
    DWORD got = 0;
    EXPECT_TRUE(ReadFile(port, buffer.data(), 4, &got, nullptr));
    EXPECT_EQ(std::string(buffer.data(), got), "OK\r\n");

    COMMTIMEOUTS whatIsThere{MAXDWORD, 0, 0, 0, 0};
    EXPECT_TRUE(SetCommTimeouts(port, &whatIsThere));
    EXPECT_TRUE(ReadFile(port, buffer.data(), 16, &got, nullptr));
    EXPECT_EQ(std::string(buffer.data(), got), "REST");
    EXPECT_TRUE(ReadFile(port, buffer.data(), 16, &got, nullptr));
    EXPECT_EQ(got, 0u);
    CloseHandle(port);
}

TEST_F(PortTest, ASilentReadEndsByItsTotalWithSuccessAndNoBytes)
{
    std::array<char, 10> buffer{};
    DWORD got = 99;
    const HANDLE port = Open(0, {0, 1, 20, 0, 0});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(ReadFile(port, buffer.data(), 10, &got, nullptr));
    EXPECT_EQ(got, 0u);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(29)); // 10 bytes * 1 ms + 20 ms
    CloseHandle(port);
}

TEST_F(PortTest, AWriteArrivesAsItIsBytewise)
{
    std::string everyByte;
    for (int byte = 0; byte < 256; byte++)
        everyByte += static_cast<char>(byte);
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kDiagnostic);
    Operation writing;
    DWORD written = 0;
    if (!WriteFile(port, everyByte.data(), 256, nullptr, &writing.record)) {
        ASSERT_EQ(GetLastError(), DWORD{ERROR_IO_PENDING});
    }
    EXPECT_EQ(writing.Finish(port, &written), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(written, 256u);
    EXPECT_EQ(Receive(256), everyByte);
    Reading reading;
    Send(everyByte);
    EXPECT_TRUE(reading.Start(port, 256) == ERROR_SUCCESS || GetLastError() == DWORD{ERROR_IO_PENDING});
    DWORD got = 0;
    EXPECT_EQ(reading.operation.Finish(port, &got), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(std::string(reading.buffer.data(), got), everyByte);
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
    EXPECT_FALSE(CancelIoEx(port, &reading.operation.record));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_FOUND});

    COMMTIMEOUTS diagnostic = kDiagnostic;
    EXPECT_TRUE(SetCommTimeouts(port, &diagnostic));
    ASSERT_EQ(reading.Start(port), DWORD{ERROR_IO_PENDING});
    Send("again");
    EXPECT_EQ(reading.operation.Finish(port, &got), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(std::string(reading.buffer.data(), got), "again");
    CloseHandle(port);
}

TEST_F(PortTest, APurgeForgetsWhatWasReceived)
{
    const HANDLE port = Open(0, {10, 0, 50, 0, 0});
    Send("stale");
    COMSTAT status{};
    DWORD errors = 0;
    for (const ULONGLONG start = GetTickCount64(); status.cbInQue < 5 && GetTickCount64() - start < 5000; Sleep(1))
        ASSERT_TRUE(ClearCommError(port, &errors, &status));
    ASSERT_EQ(status.cbInQue, 5u);
    EXPECT_TRUE(PurgeComm(port, PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR));
    std::array<char, 16> buffer{};
    DWORD got = 99;
    EXPECT_TRUE(ReadFile(port, buffer.data(), 16, &got, nullptr));
    EXPECT_EQ(got, 0u);
    CloseHandle(port);
}

TEST_F(PortTest, AClosedPortCanBeOpenedAgainAtOnce)
{
    for (int round = 0; round < 20; round++) {
        const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kDiagnostic);
        Reading reading;
        DWORD got = 0;
        ASSERT_EQ(reading.Start(port), DWORD{ERROR_IO_PENDING});
        Send("x");
        EXPECT_EQ(reading.operation.Finish(port, &got), DWORD{ERROR_SUCCESS});
        EXPECT_EQ(got, 1u);
        EXPECT_TRUE(CloseHandle(port));
        EXPECT_NE(reading.Start(port), DWORD{ERROR_IO_PENDING});
    }
}

} // namespace
