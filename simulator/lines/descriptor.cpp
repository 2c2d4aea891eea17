#include "simulator/lines/descriptor.h"

#include <cerrno>
#include <cstdint>
#include <system_error>

#include <sys/eventfd.h>
#include <unistd.h>

namespace simulator {

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

Interruption::Interruption() : raised_(Checked(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "eventfd")) {}

void Interruption::Raise() const
{
    // Fails only where it is raised beyond counting, and then it is raised.
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t size = write(raised_.Get(), &one, sizeof one);
}

} // namespace simulator
