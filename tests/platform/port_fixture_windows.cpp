#include <winsock2.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "platform/port_fixture.h"

struct PortTest::FarEnd
{
    SOCKET connection = INVALID_SOCKET;
};

namespace {

// One connection for the whole run: the port lives as long as its first one.
SOCKET Connect(const char* port)
{
    WSADATA data;
    if (WSAStartup(MAKEWORD(2, 2), &data))
        return INVALID_SOCKET;
    const SOCKET connection = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<unsigned short>(std::atoi(port)));
    if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address))
        return INVALID_SOCKET;
    const DWORD limit = 5000;
    setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&limit), sizeof limit);
    return connection;
}

} // namespace

PortTest::PortTest() : farEnd(std::make_unique<FarEnd>()) {}

PortTest::~PortTest() = default;

void PortTest::SetUp()
{
    const char* peer = std::getenv("PHNNRV_TEST_PEER");
    if (!peer || !std::getenv("PHNNRV_TEST_PORT"))
        GTEST_SKIP() << "PHNNRV_TEST_PORT and PHNNRV_TEST_PEER name no port";
    static const SOCKET connection = Connect(peer);
    ASSERT_NE(connection, INVALID_SOCKET);
    farEnd->connection = connection;
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
