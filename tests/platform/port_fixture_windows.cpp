#include "platform/port_fixture.h"

#include <cstdlib>

#include "windows/port_peer.h"

struct PortTest::FarEnd
{
    SOCKET connection = INVALID_SOCKET;
};

PortTest::PortTest() : farEnd(std::make_unique<FarEnd>()) {}

PortTest::~PortTest() = default;

void PortTest::SetUp()
{
    farEnd->connection = PortPeer();
    const DWORD limit = 5000;
    setsockopt(farEnd->connection, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&limit), sizeof limit);
}

std::string PortTest::PortName() const
{
    return std::string("\\\\?\\") + std::getenv("PHNNRV_TEST_PORT");
}

void PortTest::Send(std::string_view bytes)
{
    ASSERT_EQ(send(farEnd->connection, bytes.data(), static_cast<int>(bytes.size()), 0),
              static_cast<int>(bytes.size()));
}

int PortTest::ReceiveSome(char* bytes, int room)
{
    return recv(farEnd->connection, bytes, room, 0);
}
