#include "link/serial_fixture.h"

SerialTest::~SerialTest()
{
    open_.reset();
}

void SerialTest::Use(std::unique_ptr<CPort> port, DWORD flags, const COMMTIMEOUTS& timeouts)
{
    open_ = std::make_shared<COpenPort>(CHandle(Open(flags, timeouts)), std::move(port));
}

SerialTest::Result SerialTest::Write(const std::string& data)
{
    Result result;
    result.done = open_->Write(Device(), data.data(), static_cast<DWORD>(data.size()), &result.length, &result.error);
    return result;
}

SerialTest::Result SerialTest::Read(DWORD timeout, DWORD size)
{
    Result result;
    result.bytes.resize(size);
    result.done = open_->Read(Device(), result.bytes.data(), size, &result.length, &result.error, timeout);
    result.bytes.resize(result.done ? result.length : 0);
    return result;
}

std::future<SerialTest::Result> SerialTest::StartRead(DWORD timeout)
{
    return std::async(std::launch::async, [=, this] { return Read(timeout); });
}
