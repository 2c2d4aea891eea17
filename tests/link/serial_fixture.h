// A port object on a real serial port, with the test as the handset at its far end.
#pragma once

#include <future>
#include <memory>

#include "link/open_port.h"
#include "log/log_capture.h"
#include "platform/pty_fixture.h"

// A reply to request number `sequence` with this header of 8 bytes, as a line carries it.
inline std::string Reply(char sequence, const std::string& header = std::string(8, '\0'))
{
    std::string reply = std::string("\x4B\0\0\0\0\x0F\0\0\0", 9) + sequence + std::string(3, '\0');
    for (const char byte : header)
        reply += byte == '\x7E' ? "\x7D\x5E" : std::string(1, byte);
    return reply + "\x11\x22\x7E";
}

class SerialTest : public PortTest
{
protected:
    SerialTest() { setenv("PHNNRV_DEVICES", farEnd->directory.c_str(), 1); } // not the log's
    ~SerialTest() override { open_.reset(); }

    // Opens the port for the object, with the time-outs of its kind.
    void Use(std::unique_ptr<CPort> port, DWORD flags, const COMMTIMEOUTS& timeouts)
    {
        open_ = std::make_shared<COpenPort>(CHandle(Open(flags, timeouts)), std::move(port));
    }

    HANDLE Device() const { return open_->GetHandle(); }

    struct Result
    {
        bool done = false;
        DWORD length = 0;
        DWORD error = 0;
        std::string bytes;
    };
    Result Write(const std::string& data)
    {
        Result result;
        result.done =
            open_->Write(Device(), data.data(), static_cast<DWORD>(data.size()), &result.length, &result.error);
        return result;
    }

    Result Read(DWORD timeout, DWORD size = 8193)
    {
        Result result;
        result.bytes.assign(size, 'A');
        result.done = open_->Read(Device(), result.bytes.data(), size, &result.length, &result.error, timeout);
        EXPECT_TRUE(!result.done || result.bytes.find_first_not_of('\0', result.length) == std::string::npos);
        result.bytes.resize(result.done ? result.length : 0);
        return result;
    }

    std::future<Result> StartRead(DWORD timeout)
    {
        return std::async(std::launch::async, [=, this] { return Read(timeout); });
    }

    // Sends a request, and reads its frame at the far end: its sequence identifier.
    char Ask()
    {
        EXPECT_TRUE(Write(kRequest).done);
        std::string frame = Receive(17);
        while (!frame.empty() && frame.back() != '\x7E')
            frame += Receive(1);
        return frame.size() < 17 ? '\0' : frame[4];
    }

    const std::string kRequest = std::string("\x01\0\0\0\x01\0", 6);
    LogCapture log_{0xFFFFF};
    std::shared_ptr<COpenPort> open_;
};
