#include "simulator/web/connections.h"

#include <filesystem>
#include <string>

#include <netinet/in.h>
#include <sys/socket.h>

namespace simulator {

// Whoever accepted them keeps no list; the system does.
void EndConnections(std::uint16_t port)
{
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
        const int descriptor = std::stoi(entry.path().filename());
        sockaddr_in local{};
        socklen_t size = sizeof local;
        const bool isSocket = getsockname(descriptor, reinterpret_cast<sockaddr*>(&local), &size) == 0;
        if (isSocket && local.sin_family == AF_INET && ntohs(local.sin_port) == port)
            shutdown(descriptor, SHUT_RDWR);
    }
}

} // namespace simulator
