// The simulated handset on a pseudo terminal in a device directory: opened, dropped, unplugged and left behind.
#include "simulator/host_port.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

#include <gtest/gtest.h>

#include <future>
#include <system_error>

namespace {

using namespace simulator;
using namespace std::chrono_literals;

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
    host::Port port{others.Path() / "com5"};
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
    EXPECT_FALSE(host::Port{link}.Ask(1).empty());
    simulator.Unplug();
    std::filesystem::create_symlink("/dev/null", link);
    EXPECT_THROW(second.Start(), std::system_error);
    EXPECT_EQ(std::filesystem::read_symlink(link), "/dev/null");
}

} // namespace
