#include "simulator/lines/descriptor_line.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace simulator {
namespace {

bool IsTransient(int error)
{
    return error == EINTR || error == EAGAIN;
}

} // namespace

bool DescriptorLine::WaitFor(int descriptor, short events)
{
    std::array<pollfd, 2> waits{pollfd{interrupted_.Get(), POLLIN, 0}, pollfd{descriptor, events, 0}};
    while (poll(waits.data(), waits.size(), -1) < 0)
        if (errno != EINTR)
            return false;
    return waits[0].revents == 0;
}

std::size_t DescriptorLine::Read(std::span<std::uint8_t> buffer)
{
    while (WaitFor(open_.Get(), POLLIN)) {
        const ssize_t size = read(open_.Get(), buffer.data(), buffer.size());
        if (size > 0) {
            HostHasSent();
            return static_cast<std::size_t>(size);
        }
        if ((size == 0 || !IsTransient(errno)) && !Continues())
            return 0;
    }
    return 0;
}

bool DescriptorLine::Write(std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t size = write(open_.Get(), bytes.data(), bytes.size());
        if (size >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(size));
        else if (IsTransient(errno) ? !WaitFor(open_.Get(), POLLOUT) : !Continues())
            return false;
    }
    return true;
}

bool DescriptorLine::Continues()
{
    hostClosed_();
    return HostHasGone();
}

bool DescriptorLine::Pause(std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    pollfd wait{interrupted_.Get(), POLLIN, 0};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return true;
        const int ready = poll(&wait, 1, static_cast<int>(std::min<std::int64_t>(left.count(), 60'000)));
        if (ready > 0 || (ready < 0 && errno != EINTR))
            return false;
    }
}

void DescriptorLine::Interrupt()
{
    interrupted_.Raise();
}

} // namespace simulator
