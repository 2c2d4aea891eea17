#include <winsock2.h>

#include <array>
#include <cstdlib>

#include "platform/port_fixture.h"

struct PortTest::FarEnd
{
    SOCKET connection = INVALID_SOCKET;
};

PortTest::PortTest() : farEnd(std::make_unique<FarEnd>()) {}

PortTest::~PortTest()
{
    if (farEnd->connection != INVALID_SOCKET)
        closesocket(farEnd->connection);
}

void PortTest::SetUp()
{
    const char* peer = std::getenv("PHNNRV_TEST_PEER");
    if (!peer || !std::getenv("PHNNRV_TEST_PORT"))
        GTEST_SKIP() << "PHNNRV_TEST_PORT and PHNNRV_TEST_PEER name no port";
    WSADATA data;
    ASSERT_EQ(WSAStartup(MAKEWORD(2, 2), &data), 0);
    farEnd->connection = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<unsigned short>(std::atoi(peer)));
    ASSERT_EQ(connect(farEnd->connection, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
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
