#include "simulator/lines/handle_line_windows.h"

#include <winsock2.h>

#include <windows.h>

#include <system_error>

namespace simulator {
namespace {

[[noreturn]] void Fail(const std::string& what)
{
    throw std::system_error(WSAGetLastError(), std::system_category(), what);
}

// Listens on 127.0.0.1; its event is signalled when somebody calls.
class Listener
{
public:
    explicit Listener(std::uint16_t port)
    {
        const std::string what = "port " + std::to_string(port) + " on 127.0.0.1";
        WSADATA data;
        if (WSAStartup(MAKEWORD(2, 2), &data) != 0)
            Fail("WSAStartup");
        socket_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        const BOOL exclusive = TRUE;
        setsockopt(socket_, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&exclusive),
                   sizeof exclusive);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(socket_, 1) != 0 || WSAEventSelect(socket_, called_.Get(), FD_ACCEPT) != 0)
            Fail(what);
    }
    ~Listener() { closesocket(socket_); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    HANDLE Called() const { return called_.Get(); }

    // INVALID_SOCKET: the caller has hung up again.
    SOCKET Accept() const
    {
        WSANETWORKEVENTS events;
        WSAEnumNetworkEvents(socket_, called_.Get(), &events);
        const SOCKET peer = accept(socket_, nullptr, nullptr);
        if (peer == INVALID_SOCKET)
            return peer;
        u_long isNonBlocking = 0;
        WSAEventSelect(peer, nullptr, 0); // both are inherited
        ioctlsocket(peer, static_cast<long>(FIONBIO), &isNonBlocking);
        const BOOL noDelay = TRUE;
        setsockopt(peer, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&noDelay), sizeof noDelay);
        return peer;
    }

private:
    const Handle called_{MakeEvent()};
    SOCKET socket_ = INVALID_SOCKET;
};

class TcpLine : public HandleLine
{
public:
    explicit TcpLine(std::shared_ptr<const Listener> listener) : listener_(std::move(listener)) {}
    ~TcpLine() override
    {
        if (open_.Get())
            closesocket(reinterpret_cast<SOCKET>(open_.Release()));
    }

    std::size_t Read(std::span<std::uint8_t> buffer) override
    {
        while (!open_.Get()) {
            if (!WaitFor(listener_->Called()))
                return 0;
            const SOCKET peer = listener_->Accept();
            if (peer != INVALID_SOCKET)
                open_.Reset(reinterpret_cast<HANDLE>(peer));
        }
        return HandleLine::Read(buffer);
    }

private:
    bool HostHasGone() override
    {
        hostClosed_();
        return false;
    }

    const std::shared_ptr<const Listener> listener_;
};

} // namespace

LineOpener TcpLines(std::uint16_t port)
{
    const auto listener = std::make_shared<const Listener>(port);
    return [listener] { return std::make_unique<TcpLine>(listener); };
}

} // namespace simulator
