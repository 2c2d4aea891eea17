#include "simulator/lines/descriptor_line.h"

#include <cerrno>
#include <system_error>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

namespace simulator {
namespace {

class TcpLine : public DescriptorLine
{
public:
    explicit TcpLine(std::shared_ptr<Descriptor> listener) : listener_(std::move(listener)) {}

    std::size_t Read(std::span<std::uint8_t> buffer) override
    {
        while (open_.Get() < 0) {
            if (!WaitFor(listener_->Get(), POLLIN))
                return 0;
            open_.Reset(accept4(listener_->Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
            if (open_.Get() < 0 && errno != EINTR && errno != ECONNABORTED)
                return 0;
            const int noDelay = 1;
            setsockopt(open_.Get(), IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
        }
        return DescriptorLine::Read(buffer);
    }

private:
    std::shared_ptr<Descriptor> listener_;
};

} // namespace

LineOpener TcpLines(std::uint16_t port)
{
    const auto listener =
        std::make_shared<Descriptor>(Checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
    const int reuse = 1;
    Checked(setsockopt(listener->Get(), SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse), "setsockopt");
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const std::string what = "port " + std::to_string(port) + " on 127.0.0.1";
    Checked(bind(listener->Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), what);
    Checked(listen(listener->Get(), 1), what);
    return [listener] { return std::make_unique<TcpLine>(listener); };
}

} // namespace simulator
