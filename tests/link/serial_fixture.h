// A port object on a real serial port, with the test as the handset at its far end.
#pragma once

#include <future>
#include <memory>
#include <vector>

#include "link/open_port.h"
#include "log/log_capture.h"
#include "platform/port_fixture.h"

class SerialTest : public PortTest
{
protected:
    ~SerialTest() override;

    // Opens the port for the object, with the time-outs of its kind.
    void Use(std::unique_ptr<CPort> port, DWORD flags, const COMMTIMEOUTS& timeouts);

    HANDLE Device() const { return open_->GetHandle(); }

    struct Result
    {
        bool done = false;
        DWORD length = 0;
        DWORD error = 0;
        std::string bytes;
    };
    Result Write(const std::string& data);
    Result Read(DWORD timeout, DWORD size = 8193);
    std::future<Result> StartRead(DWORD timeout);

    LogCapture log_{0xFFFFF};
    std::shared_ptr<COpenPort> open_;
};
