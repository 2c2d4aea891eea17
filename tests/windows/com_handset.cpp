#include "windows/com_handset.h"

#include <array>
#include <span>
#include <stdexcept>

void ComHandset::Serve(const std::stop_token& stop)
{
    simulator::Session session(handset_, simulator::PortKind::Diagnostic);
    std::array<std::uint8_t, 16384> buffer;
    while (!stop.stop_requested()) {
        WSAPOLLFD arrival{peer_, POLLRDNORM, 0};
        if (WSAPoll(&arrival, 1, 10) == 0)
            continue;
        const int size = recv(peer_, reinterpret_cast<char*>(buffer.data()), static_cast<int>(buffer.size()), 0);
        if (size <= 0)
            throw std::runtime_error("the port's far end is gone");
        for (const simulator::Step& step : session.Receive(std::span(buffer).first(static_cast<std::size_t>(size)))) {
            if (step.kind != simulator::Step::Kind::Send)
                throw std::runtime_error("the test run's port cannot be hung up");
            std::this_thread::sleep_for(step.delay);
            const int length = static_cast<int>(step.bytes.size());
            if (send(peer_, reinterpret_cast<const char*>(step.bytes.data()), length, 0) != length)
                throw std::runtime_error("the port's far end takes nothing");
        }
    }
}
