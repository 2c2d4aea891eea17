#include "simulator/descriptor_line.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace simulator {
namespace {

bool IsTransient(int error)
{
    return error == EINTR || error == EAGAIN;
}

} // namespace

void Descriptor::Reset(int number)
{
    if (number_ >= 0)
        close(number_);
    number_ = number;
}

int Checked(int result, const std::string& what)
{
    if (result == -1)
        throw std::system_error(errno, std::generic_category(), what);
    return result;
}

DescriptorLine::DescriptorLine() : interrupted_(Checked(eventfd(0, EFD_CLOEXEC), "eventfd")) {}

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
        if (size >= 0 || !IsTransient(errno))
            return size > 0 ? static_cast<std::size_t>(size) : 0;
    }
    return 0;
}

bool DescriptorLine::Write(std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t size = write(open_.Get(), bytes.data(), bytes.size());
        if (size >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(size));
        else if (!IsTransient(errno) || !WaitFor(open_.Get(), POLLOUT))
            return false;
    }
    return true;
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
    // Adding one to an eventfd cannot block here, and fails only once it is beyond counting.
    const std::uint64_t one = 1;
    Checked(static_cast<int>(write(interrupted_.Get(), &one, sizeof one)), "eventfd");
}

} // namespace simulator
