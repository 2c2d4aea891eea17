#include "bare_terminal.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace bench {

BareTerminal::BareTerminal(const std::string& path) : terminal_(open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC))
{
    termios settings{};
    if (terminal_ < 0 || tcgetattr(terminal_, &settings) != 0)
        throw std::system_error(errno, std::generic_category(), path);
    cfmakeraw(&settings);
    tcsetattr(terminal_, TCSANOW, &settings);
}

BareTerminal::~BareTerminal()
{
    close(terminal_);
}

std::size_t BareTerminal::Exchange(const void* frame, std::size_t length, std::size_t replyLength)
{
    std::size_t total = 0;
    pollfd wait{terminal_, POLLIN, 0};
    if (write(terminal_, frame, length) != static_cast<ssize_t>(length))
        return 0;
    while (total < replyLength && poll(&wait, 1, total == 0 ? 15000 : 10) > 0) {
        const ssize_t got = read(terminal_, reply_ + total, replyLength - total);
        if (got <= 0)
            break;
        total += static_cast<std::size_t>(got);
    }
    return total;
}

} // namespace bench
