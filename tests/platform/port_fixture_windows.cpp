#include "platform/port_fixture.h"

#include <algorithm>
#include <array>
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

std::string PortTest::Receive(std::size_t count)
{
    std::string received;
    while (received.size() < count) {
        std::array<char, 4096> chunk{};
        const auto room = static_cast<int>(std::min(chunk.size(), count - received.size()));
        const int got = recv(farEnd->connection, chunk.data(), room, 0);
        if (got <= 0)
            break;
        received.append(chunk.data(), static_cast<std::size_t>(got));
    }
    return received;
}
