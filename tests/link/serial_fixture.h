// A port object on a real serial port, with the test as the handset at its far end.
#pragma once

#include <future>
#include <memory>

#include "link/open_port.h"
#include "log/log_capture.h"
#include "platform/port_fixture.h"

class SerialTest : public PortTest
{
protected:
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
        result.bytes.resize(size);
        result.done = open_->Read(Device(), result.bytes.data(), size, &result.length, &result.error, timeout);
        result.bytes.resize(result.done ? result.length : 0);
        return result;
    }

    std::future<Result> StartRead(DWORD timeout)
    {
        return std::async(std::launch::async, [=, this] { return Read(timeout); });
    }

    LogCapture log_{0xFFFFF};
    std::shared_ptr<COpenPort> open_;
};
