// A handset with a modem port only. Its reads end after seconds that no clock shortens: all times run at a twentieth.
#include <dbt.h>

#include <algorithm>

#include "device/device_world.h"
#include "link/command.h"
#include "link/exec_command.h"

namespace {

class ModemTest : public DeviceTest
{
protected:
    ModemTest() { setenv("PHNNRV_TIME_SCALE", "0.05", 1); }

    // Without the lines of the watch, which comes round when it likes.
    Events TakeDeviceLog()
    {
        Events lines = TakeLog();
        std::erase_if(lines, [](const std::string& line) { return line.starts_with("BT_Thread"); });
        return lines;
    }

    LRESULT Arrive()
    {
        return Broadcast(DBT_DEVICEARRIVAL, kModemInterface, "\\\\?\\" + simulator::ModemInterfaceName("0001"));
    }
};

} // namespace

TEST_F(ModemTest, ADialogueThatFailsReleasesThePortWholeAndOneThatSucceedsCarriesRequests)
{
    simulator::Simulator& modem = Attach(simulator::ModemInterfaceName("0001"), simulator::PortKind::Modem);
    Create();
    modem.Control().AddFault("error@at*2");
    EXPECT_EQ(Arrive(), FALSE);
    EXPECT_TRUE(HasLine("CDevice::OpenModemPort - ERROR sending the AT command"));
    EXPECT_EQ(owner_.TakeEvents(), Events{});
    EXPECT_FALSE(Device().ScanforDevices(kModemInterface));
    const Events search = TakeDeviceLog();
    EXPECT_EQ(search.front(), "CDevice::ScanforDevices - Traversing all device");
    EXPECT_EQ(search.back(), "CDevice::ScanforDevices - OpenModemPort failed");

    EXPECT_EQ(Arrive(), TRUE);
    EXPECT_EQ(owner_.TakeEvents(), Events{"opened"});
    const Events lines = TakeDeviceLog();
    EXPECT_EQ(std::ranges::count(lines, "CDevice::OpenModemPort - Setting the Handle"), 1);
    EXPECT_EQ(lines.back(), "CDevice::OnDeviceChange, DBT_DEVICEARRIVAL, opened modem port.");
    EXPECT_TRUE(Device().ScanforDevices(kModemInterface)) << "it is open";
    EXPECT_TRUE(Device().CheckPort());
    EXPECT_EQ(modem.Control().Requests(kCommandStartup), 1u);
}
