#include "windows/port_peer.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace {

SOCKET Connect()
{
    const char* peer = std::getenv("PHNNRV_TEST_PEER");
    if (!peer || !std::getenv("PHNNRV_TEST_PORT"))
        throw std::runtime_error("PHNNRV_TEST_PORT and PHNNRV_TEST_PEER name no port");
    WSADATA data;
    if (const int error = WSAStartup(MAKEWORD(2, 2), &data))
        throw std::runtime_error("WSAStartup: " + std::to_string(error));
    const SOCKET connection = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<unsigned short>(std::atoi(peer)));
    if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address))
        throw std::runtime_error("the port's far end does not answer: " + std::to_string(WSAGetLastError()));
    const BOOL noDelay = TRUE;
    setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&noDelay), sizeof noDelay);
    return connection;
}

} // namespace

SOCKET PortPeer()
{
    static const SOCKET connection = Connect();
    return connection;
}
