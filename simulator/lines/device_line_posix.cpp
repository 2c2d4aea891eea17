#include "simulator/lines/descriptor_line.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <termios.h>

namespace simulator {
namespace {

class DeviceLine : public DescriptorLine
{
public:
    explicit DeviceLine(const std::filesystem::path& device)
    {
        open_.Reset(Checked(open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK), device.string()));
        TakeLock(device);
        termios settings{};
        Checked(tcgetattr(open_.Get(), &settings), device.string());
        cfmakeraw(&settings);
        settings.c_cflag |= CLOCAL | CREAD;
        cfsetspeed(&settings, B115200);
        Checked(tcsetattr(open_.Get(), TCSANOW, &settings), device.string());
    }

private:
    // That of the library's hosts, which takes the port for itself alone.
    void TakeLock(const std::filesystem::path& device)
    {
        if (flock(open_.Get(), LOCK_EX | LOCK_NB) == 0)
            return;
        const bool isHeld = errno == EWOULDBLOCK;
        throw std::system_error(isHeld ? EBUSY : errno, std::generic_category(),
                                device.string() + (isHeld ? " is in use by another program" : ""));
    }
};

} // namespace

LineOpener DeviceLines(std::filesystem::path device)
{
    return [device = std::move(device)] { return std::make_unique<DeviceLine>(device); };
}

} // namespace simulator
