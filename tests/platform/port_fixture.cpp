#include "platform/port_fixture.h"

HANDLE PortTest::Open(DWORD flags, const COMMTIMEOUTS& timeouts)
{
    const HANDLE port =
        CreateFileA(PortName().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, flags, nullptr);
    EXPECT_NE(port, INVALID_HANDLE_VALUE) << GetLastError();
    COMMTIMEOUTS set = timeouts;
    EXPECT_TRUE(SetCommTimeouts(port, &set)) << GetLastError();
    return port;
}
