// How the library finds and loses a handset on Windows: device interfaces, device messages, the serial-port map; and
// where its log goes.
#include <windows.h>

#include <dbt.h>

#include <algorithm>
#include <ctime>
#include <filesystem>

#include "api/handset_fixture.h"
#include "windows/driver.h"

namespace fs = std::filesystem;

namespace {

constexpr uint32_t kDeviceErrors = 0x404;

class DiscoveryTest : public HandsetTest
{
protected:
    DiscoveryTest() { bench_.SetLoggingLevel(kDeviceErrors); }
    ~DiscoveryTest() override { driver::ClearSerialPorts(); }

    static std::string TestPort() { return std::getenv("PHNNRV_TEST_PORT"); }

    PHN_ERROR Battery()
    {
        PHN_BATTERY_INFO info{};
        info.uSize = sizeof info;
        return CALL(PHN_GetBatteryInfo)(&info);
    }

    std::string Model()
    {
        PHN_DEVICE_INFO info{};
        info.uSize = sizeof info;
        EXPECT_EQ(CALL(PHN_GetDeviceInfo)(&info), PHN_ERROR_NONE);
        return info.szModel;
    }

    // Waits until the device object has logged this error.
    bool AwaitError(const std::string& text)
    {
        const std::string line = "CDevice\tError\t" + text;
        for (int turn = 0; turn < 500; ++turn, Sleep(20)) {
            const auto lines = bench_.TakeLog();
            if (std::ranges::find(lines, line) != lines.end())
                return true;
        }
        return false;
    }
};

} // namespace

TEST_F(DiscoveryTest, AUsbHandsetIsOpenedWhenItIsThereAndWhenItArrivesAndClosedWhenItGoes)
{
    StartService();
    EXPECT_EQ(Model(), bench_.Handset().Snapshot().identity.model);
    driver::SetInterfacePresent(false);
    EXPECT_TRUE(driver::SendDeviceChange(DBT_DEVICEREMOVECOMPLETE));
    EXPECT_EQ(Battery(), PHN_ERROR_NO_DEVICE);

    bench_.Plug();
    EXPECT_EQ(Battery(), PHN_ERROR_NO_SERVICE_OBJECT);
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(Battery(), PHN_ERROR_NONE);
}

TEST_F(DiscoveryTest, ASerialHandsetIsFoundThroughTheMapAndDroppedBySuspend)
{
    driver::SetSerialPort(TestPort());
    Load();
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(Model(), bench_.Handset().Snapshot().identity.model);
    SendMessageA(FindWindowA(driver::kDeviceWindow, nullptr), WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
    EXPECT_EQ(Battery(), PHN_ERROR_NO_DEVICE);
}

// Interfaces that nobody announced still name their ports, which the scan of the serial-port map leaves alone.
TEST_F(DiscoveryTest, APortOfTheMakersUsbDeviceIsNotProbed)
{
    Load();
    driver::SetInterfacePortName(TestPort());
    driver::SetInterfacePresent(true);
    driver::SetSerialPort(TestPort());
    driver::DispatchStartTimer();
    EXPECT_TRUE(AwaitError("CDevice::ScanPorts - the port to be opened is an USB"));
    EXPECT_EQ(bench_.Handset().Requests(), 0u);
}

TEST_F(DiscoveryTest, TheLogLiesBesideTheLibraryUnderItsNameAndTheMinute)
{
    const fs::path library = bench_.LibraryPath();
    const auto expected = [&] {
        char stamp[32];
        const std::time_t now = std::time(nullptr);
        std::strftime(stamp, sizeof stamp, "%Y_%m_%d_%H_%M_", std::localtime(&now));
        return library.string() + stamp + ".log";
    };
    const std::string before = expected();
    Load();
    const std::string after = expected();
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(library.parent_path())) {
        if (entry.path() != library)
            names.push_back(entry.path().string());
    }
    ASSERT_EQ(names.size(), 1u);
    EXPECT_TRUE(names[0] == before || names[0] == after) << names[0];
}
