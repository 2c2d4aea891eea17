// The simulated handset as a device: on a pseudo terminal in a device directory, opened, dropped, unplugged and left
// behind.
#include "simulator/host_side.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <future>
#include <system_error>

namespace {

using namespace simulator;
using namespace std::chrono_literals;

struct HostPort
{
    ~HostPort() { close(descriptor); }

    void Send(std::uint32_t command)
    {
        const Bytes frame = host::Frame(1, host::Record(command, {}));
        ASSERT_EQ(write(descriptor, frame.data(), frame.size()), static_cast<ssize_t>(frame.size()));
    }

    // Up to the closing flag; what came before when the port has ended.
    Bytes Receive()
    {
        Bytes received;
        while (received.empty() || received.back() != kFlag) {
            pollfd wait{descriptor, POLLIN, 0};
            std::uint8_t buffer[512];
            const ssize_t size = poll(&wait, 1, 10'000) > 0 ? read(descriptor, buffer, sizeof buffer) : 0;
            if (size <= 0)
                return received;
            received.insert(received.end(), buffer, buffer + size);
        }
        return received;
    }

    Bytes Ask(std::uint32_t command)
    {
        Send(command);
        return Receive();
    }

    const std::filesystem::path path;
    const int descriptor = open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
};

class DeviceTest : public testing::Test
{
protected:
    DeviceTest()
    {
        std::filesystem::create_symlink("/dev/pts/9999", link); // left behind by another one
        simulator.Start();
    }

    const DeviceDirectory devices;
    const std::filesystem::path link = devices.Path() / "com5";
    Simulator simulator{devices.Path(), "com5"};
};

TEST_F(DeviceTest, TellsOfALineThatIsLost)
{
    const DeviceDirectory others;
    std::promise<std::string> told;
    Simulator lost(others.Path(), "com5");
    lost.WhenLost([&](const std::string& why) { told.set_value(why); });
    lost.Start();
    lost.Control().AddFault("hangup@1");
    HostPort port{others.Path() / "com5"};
    std::filesystem::remove_all(others.Path());
    port.Ask(1);
    std::future<std::string> why = told.get_future();
    ASSERT_EQ(why.wait_for(10s), std::future_status::ready);
    EXPECT_NE(why.get().find(others.Path().string()), std::string::npos);
    EXPECT_FALSE(lost.IsPlugged());
}

TEST_F(DeviceTest, ReplacesNothingElse)
{
    Simulator second(devices.Path(), "com5");
    EXPECT_THROW(second.Start(), std::system_error);
    EXPECT_FALSE(HostPort{link}.Ask(1).empty());
    simulator.Unplug();
    std::filesystem::create_symlink("/dev/null", link);
    EXPECT_THROW(second.Start(), std::system_error);
    EXPECT_EQ(std::filesystem::read_symlink(link), "/dev/null");
}

} // namespace
