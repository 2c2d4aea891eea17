#include "windows/com_handset.h"

#include <array>
#include <stdexcept>

ComHandset::ComHandset() : peer_(PortPeer()), stop_(WSACreateEvent()), arrived_(WSACreateEvent())
{
    if (WSAEventSelect(peer_, arrived_, FD_READ | FD_CLOSE))
        throw std::runtime_error("WSAEventSelect: " + std::to_string(WSAGetLastError()));
    thread_ = std::thread([this] { Serve(); });
}

ComHandset::~ComHandset()
{
    WSASetEvent(stop_);
    thread_.join();
    WSAEventSelect(peer_, nullptr, 0);
    WSACloseEvent(arrived_);
    WSACloseEvent(stop_);
}

void ComHandset::Serve()
{
    simulator::Session session(handset_, simulator::PortKind::Diagnostic);
    const std::array events{stop_, arrived_};
    std::array<std::uint8_t, 16384> buffer;
    while (WSAWaitForMultipleEvents(events.size(), events.data(), FALSE, WSA_INFINITE, FALSE) != WSA_WAIT_EVENT_0) {
        WSANETWORKEVENTS seen;
        WSAEnumNetworkEvents(peer_, arrived_, &seen);
        const int size = recv(peer_, reinterpret_cast<char*>(buffer.data()), static_cast<int>(buffer.size()), 0);
        if (size == SOCKET_ERROR && WSAGetLastError() == WSAEWOULDBLOCK)
            continue;
        if (size <= 0)
            throw std::runtime_error("the port's far end is gone");
        for (const simulator::Step& step : session.Receive(std::span(buffer).first(static_cast<std::size_t>(size))))
            Perform(step);
    }
}

void ComHandset::Perform(const simulator::Step& step)
{
    if (step.kind != simulator::Step::Kind::Send)
        throw std::runtime_error("the test run's port cannot be hung up");
    WSAWaitForMultipleEvents(1, &stop_, FALSE, static_cast<DWORD>(step.delay.count()), FALSE);
    const int size = static_cast<int>(step.bytes.size());
    if (send(peer_, reinterpret_cast<const char*>(step.bytes.data()), size, 0) != size)
        throw std::runtime_error("the port's far end takes nothing");
}
