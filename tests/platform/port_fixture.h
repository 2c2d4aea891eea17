// A serial port for the tests of the platform's calls, with the test at its far end. On Linux it is a pseudo terminal
// that the fixture publishes in a device directory of its own; on Windows it is the port of the test run
// (windows/port_peer.h).
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include <windows.h>

class PortTest : public testing::Test
{
protected:
    PortTest();
    ~PortTest() override;
    void SetUp() override;

    // What CreateFileA opens.
    std::string PortName() const;

    void Send(std::string_view bytes);

    // The next bytes that arrive at the far end; fewer if they do not come within five seconds.
    std::string Receive(std::size_t count)
    {
        std::string received;
        char chunk[4096];
        for (int got = 1; got > 0 && received.size() < count; received.append(chunk, static_cast<std::size_t>(got)))
            got = std::max(0, ReceiveSome(chunk, static_cast<int>(std::min(sizeof chunk, count - received.size()))));
        return received;
    }

    // The port opened with these time-outs.
    HANDLE Open(DWORD flags, COMMTIMEOUTS timeouts) const
    {
        const HANDLE port =
            CreateFileA(PortName().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, flags, nullptr);
        EXPECT_TRUE(SetCommTimeouts(port, &timeouts)) << GetLastError();
        return port;
    }

    struct FarEnd;
    // As many bytes as there are within five seconds; none, or less, when none come.
    int ReceiveSome(char* bytes, int room);

    std::unique_ptr<FarEnd> farEnd;
};

// An OVERLAPPED record with its event, which must be over before it goes.
class Operation
{
public:
    Operation() { record.hEvent = CreateEventA(nullptr, TRUE, FALSE, nullptr); }
    ~Operation() { CloseHandle(record.hEvent); }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    // Waits until the operation is over; its bytes, and its error code.
    DWORD Finish(HANDLE port, DWORD* bytes)
    {
        return GetOverlappedResult(port, &record, bytes, TRUE) ? DWORD{ERROR_SUCCESS} : GetLastError();
    }

    OVERLAPPED record{};
};
