// The simulated handset as a device: on a pseudo terminal in a device directory, opened, dropped, unplugged and left
// behind.
#include "simulator/device_directory.h"
#include "simulator/host_side.h"
#include "simulator/simulator.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <system_error>

namespace {

using namespace simulator;
using namespace std::chrono_literals;

class HostPort
{
public:
    explicit HostPort(const std::filesystem::path& path)
        : descriptor_(open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
    }
    ~HostPort() { close(descriptor_); }
    HostPort(const HostPort&) = delete;
    HostPort& operator=(const HostPort&) = delete;

    void Send(const Bytes& bytes)
    {
        ASSERT_EQ(write(descriptor_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }

    // Up to the closing flag; what came before when the port has ended.
    Bytes Receive()
    {
        Bytes received;
        while (received.empty() || received.back() != kFlag) {
            pollfd wait{descriptor_, POLLIN, 0};
            std::uint8_t buffer[512];
            const ssize_t size = poll(&wait, 1, 10'000) > 0 ? read(descriptor_, buffer, sizeof buffer) : 0;
            if (size <= 0)
                return received;
            received.insert(received.end(), buffer, buffer + size);
        }
        return received;
    }

    Bytes Ask(std::uint32_t command, std::uint32_t sequence = 1)
    {
        Send(host::Frame(sequence, host::Record(command, {})));
        return Receive();
    }

private:
    int descriptor_;
};

class DeviceTest : public testing::Test
{
protected:
    const DeviceDirectory devices;
    const std::filesystem::path link = devices.Path() / "com5";
    Simulator simulator{devices.Path(), "com5"};
};

TEST_F(DeviceTest, ServesOneHostAfterTheOther)
{
    EXPECT_FALSE(simulator.IsPlugged());
    simulator.Start();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(HostPort(link).Ask(6).size(), 307u);
    simulator.Control().AddFault("payload=9000*1");
    simulator.Control().AddFault("split=1,100/1*1");
    EXPECT_EQ(HostPort(link).Ask(1).size(), 9016u);
    EXPECT_TRUE(simulator.Control().WaitForRequests(6, 3, 10s));
    EXPECT_FALSE(simulator.Control().WaitForRequests(6, 4, 0ms));
}

TEST_F(DeviceTest, ComesAndGoes)
{
    {
        Simulator own(devices.Path(), "com5");
        own.Start();
        HostPort port(link);
        own.Unplug();
        EXPECT_FALSE(std::filesystem::is_symlink(link));
        EXPECT_EQ(port.Receive(), Bytes());
        own.Replug();
        own.Control().AddFault("unplug@2");
        HostPort(link).Ask(2);
        EXPECT_FALSE(own.IsPlugged());
        own.Replug();
        HostPort dropped(link);
        own.HangUp();
        EXPECT_EQ(dropped.Receive(), Bytes());
        EXPECT_FALSE(HostPort(link).Ask(1).empty());
    }
    EXPECT_FALSE(std::filesystem::is_symlink(link));
}

TEST_F(DeviceTest, CanBeTakenAwayWhileItHasNotAnsweredYet)
{
    simulator.Start();
    simulator.Control().AddFault("delay=600000");
    HostPort port(link);
    port.Send(host::Frame(1, host::Record(1, {})));
    ASSERT_TRUE(simulator.Control().WaitForRequests(1, 1, 10s));
    simulator.Unplug();
    EXPECT_EQ(port.Receive(), Bytes());
}

TEST_F(DeviceTest, ReplacesOnlyWhatASimulatorLeftBehind)
{
    std::filesystem::create_symlink("/dev/pts/9999", link);
    simulator.Start();
    Simulator second(devices.Path(), "com5");
    EXPECT_THROW(second.Start(), std::system_error);
    EXPECT_FALSE(HostPort(link).Ask(1).empty());
    simulator.Unplug();
    std::filesystem::create_symlink("/dev/null", link);
    EXPECT_THROW(second.Start(), std::system_error);
    EXPECT_EQ(std::filesystem::read_symlink(link), "/dev/null");
}

} // namespace
