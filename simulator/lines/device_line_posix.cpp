#include "simulator/lines/descriptor_line.h"

#include <fcntl.h>
#include <termios.h>

namespace simulator {
namespace {

class DeviceLine : public DescriptorLine
{
public:
    explicit DeviceLine(const std::filesystem::path& device)
    {
        open_.Reset(Checked(open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK), device.string()));
        termios settings{};
        Checked(tcgetattr(open_.Get(), &settings), device.string());
        cfmakeraw(&settings);
        settings.c_cflag |= CLOCAL | CREAD;
        cfsetspeed(&settings, B115200);
        Checked(tcsetattr(open_.Get(), TCSANOW, &settings), device.string());
    }
};

} // namespace

LineOpener DeviceLines(std::filesystem::path device)
{
    return [device = std::move(device)] { return std::make_unique<DeviceLine>(device); };
}

} // namespace simulator
