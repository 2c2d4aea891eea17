// How the library finds and loses a handset on Windows: device interfaces, device messages, the serial-port map.
#include "api/handset_fixture.h"
#include "callback/host_functions.h"
#include "windows/driver.h"

namespace {

class DiscoveryTest : public HandsetTest
{
protected:
    ~DiscoveryTest() override { driver::ClearSerialPorts(); }

    using Types = std::vector<uint32_t>;

    std::string Model()
    {
        PHN_DEVICE_INFO info{};
        info.uSize = sizeof info;
        EXPECT_EQ(CALL(PHN_GetDeviceInfo)(&info), PHN_ERROR_NONE);
        return info.szModel;
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
    driver::SetSerialPort(std::getenv("PHNNRV_TEST_PORT"));
    Load();
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(Model(), bench_.Handset().Snapshot().identity.model);
    ASSERT_EQ(CALL(PHN_SetCallback)(PHN_CALLBACK_REMOVED, Tell, 0), PHN_ERROR_NONE);
    SendMessageA(FindWindowA(driver::kDeviceWindow, nullptr), WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
    EXPECT_EQ(Battery(), PHN_ERROR_NO_DEVICE);
    EXPECT_EQ(TakeTypes(), Types{PHN_CALLBACK_REMOVED});
}
