// What the hidden window hears: interfaces that come and go, power events, the poll message and its timer.
#include <sstream>
#include <thread>

#include "device/device_world.h"
#include "phn_platform_test.h"

using platform_test::AdvanceClock;
using platform_test::AwaitBlocked;
using simulator::ModemInterfaceName;
using simulator::UsbInterfaceName;

constexpr std::uint32_t kStartup = 1;

using NotificationTest = DeviceTest;

TEST_F(NotificationTest, AUsbHandsetIsFoundAtOnceLostWithItsInterfaceAndFoundWhenItReturns)
{
    simulator::Simulator& handset = Attach(UsbInterfaceName("0001"));
    Create();
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(owner_.TakeEvents(), Events{"opened"});

    // Another interface of the maker comes and goes: the open handset is asked, and kept.
    simulator::Simulator& other = Attach(UsbInterfaceName("0002"));
    EXPECT_TRUE(PumpUntil([&] { return handset.Control().Requests(kStartup) == 1; }));
    other.Unplug();
    EXPECT_TRUE(PumpUntil([this] {
        return HasLine("CDevice::OnDeviceChange, DBT_DEVICEREMOVECOMPLETE = \\\\?\\" + UsbInterfaceName("0002"));
    }));
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(owner_.TakeEvents(), Events{});

    handset.Unplug();
    EXPECT_TRUE(PumpUntil([this] { return !IsOpen(); }));
    EXPECT_EQ(owner_.TakeEvents(), (Events{"lost", "released"}));
    handset.Replug();
    EXPECT_TRUE(PumpUntil([this] { return IsOpen(); }));
    EXPECT_EQ(owner_.TakeEvents(), Events{"opened"});
}

TEST_F(NotificationTest, AnArrivalReplacesAnOpenPortThatNoLongerAnswers)
{
    simulator::Simulator& dead = Attach(UsbInterfaceName("0001"));
    Create();
    dead.Control().AddFault("silence");
    owner_.TakeEvents();
    Attach(UsbInterfaceName("0002"));
    std::thread clock([] {
        EXPECT_TRUE(AwaitBlocked(3000));
        AdvanceClock(3000);
    });
    EXPECT_TRUE(PumpUntil([this] {
        return Device().GetPort() && Device().GetPort()->GetPath() == "\\\\?\\" + UsbInterfaceName("0002");
    }));
    clock.join();
    EXPECT_EQ(owner_.TakeEvents(), (Events{"lost", "released", "opened"}));
}

TEST_F(NotificationTest, ARemovalEndsTheExchangeInProgressAndThePortOpensAgain)
{
    simulator::Simulator& handset = Attach(UsbInterfaceName("0001"));
    Create();
    handset.Control().AddFault("silence*1");
    bool answered = true;
    std::thread reader([&] { answered = Device().CheckPort(); });
    ASSERT_TRUE(AwaitBlocked(3000));
    // The handset has taken the request, and will not answer it.
    ASSERT_TRUE(PumpUntil([&] { return handset.Control().Requests(kStartup) == 1; }));
    // The line is still good: only the message says that the interface is gone. No clock moves.
    Broadcast(DBT_DEVICEREMOVECOMPLETE, kDiagnosticInterface, "\\\\?\\" + UsbInterfaceName("0001"));
    reader.join();
    EXPECT_FALSE(answered);
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(Broadcast(DBT_DEVICEARRIVAL, kDiagnosticInterface, "\\\\?\\" + UsbInterfaceName("0001")), TRUE);
    EXPECT_TRUE(Device().CheckPort());
}

TEST_F(NotificationTest, TheDeviceDirectoryMayComeAndGoAndALinkBeReplaced)
{
    const std::string name = "usb#vid_fffe&pid_0001#0001#{6B1D2E40-5C77-4A1E-9D3A-2F80C4E1B7A5}"; // as some write it
    std::filesystem::remove_all(log_.Devices());
    Create();
    std::filesystem::create_directory(log_.Devices());
    Attach(name);
    EXPECT_TRUE(PumpUntil([this] { return IsOpen(); }));
    owner_.TakeEvents();
    // Another device in the place of the first one.
    const auto link = log_.Devices() / name, made = log_.Devices() / ".made";
    std::filesystem::create_symlink(std::filesystem::read_symlink(link), made);
    std::filesystem::rename(made, link);
    Events events;
    EXPECT_TRUE(PumpUntil([&] {
        const Events more = owner_.TakeEvents();
        events.insert(events.end(), more.begin(), more.end());
        return events.size() == 3;
    }));
    EXPECT_EQ(events, (Events{"lost", "released", "opened"}));
    std::filesystem::remove_all(log_.Devices());
    EXPECT_TRUE(PumpUntil([this] { return !IsOpen(); }));
    std::filesystem::create_directory(log_.Devices());
}

TEST_F(NotificationTest, ArrivalsAreAnsweredByClassAndName)
{
    Create();
    const std::string path = "\\\\?\\" + ModemInterfaceName("0001");
    const GUID other{1, 2, 3, {}};
    TakeLog();
    EXPECT_EQ(Broadcast(DBT_DEVICEARRIVAL, kModemInterface, "\\\\?\\USB#VID_1234&PID_1#1#{}"), TRUE);
    EXPECT_EQ(TakeLog(), Events{"CDevice::OnDeviceChange, DBT_DEVICEARRIVAL = \\\\?\\usb#vid_1234&pid_1#1#{}"});
    EXPECT_EQ(Broadcast(DBT_DEVICEARRIVAL, other, path), TRUE);
    EXPECT_EQ(Send(WM_DEVICECHANGE, DBT_DEVICEARRIVAL), TRUE);
    EXPECT_EQ(Broadcast(DBT_DEVICEARRIVAL, kDiagnosticInterface, "\\\\?\\usb#vid_fffe&pid_9#absent#{}"), FALSE);
    EXPECT_FALSE(IsOpen());
}

TEST_F(NotificationTest, PowerEventsAreLoggedByName)
{
    Attach(UsbInterfaceName("0001"));
    Create();
    std::istringstream rows(
        "0 PBT_APMQUERYSUSPEND, 2 PBT_APMQUERYSUSPENDFAILED, 4 PBT_APMSUSPEND, "
        "6 PBT_APMRESUMECRITICAL, 7 PBT_APMRESUMESUSPEND, 9 PBT_APMBATTERYLOW, "
        "10 PBT_APMPOWERSTATUSCHANGE, 11 PBT_APMOEMEVENT, 18 PBT_APMRESUMEAUTOMATIC, 5 wParam = 5,");
    WPARAM event = 0;
    for (std::string name; rows >> event >> std::ws && std::getline(rows, name, ',');) {
        TakeLog();
        EXPECT_EQ(Send(WM_POWERBROADCAST, event), TRUE);
        EXPECT_EQ(TakeLog(), Events{"CDevice::OnBroadCasting - " + name});
    }
    EXPECT_TRUE(IsOpen());
}

TEST_F(NotificationTest, WhatTheWindowSystemRefusesIsSaidOnce)
{
    const std::pair<const char*, const char*> rows[] = {
        {"CreateWindowExA", "CDevice::CDevice - Unable to create the window. Last error 0x8"},
        {"RegisterDeviceNotificationA",
         "CDevice::RegisterNotification - RegisterDeviceNotification failed. Last error 0x8"},
        {"SetTimer", "CDevice - Unable to start timer 3. Last error 0x8"},
    };
    for (const auto& [call, line] : rows) {
        platform_test::FailCall(call, ERROR_NOT_ENOUGH_MEMORY);
        log_.SetLevel(0x404);
        TakeLog();
        CDevice device;
        if (call != rows[0].first)
            device.RegisterNotification();
        device.InitPortScanning();
        EXPECT_EQ(TakeLog(), Events{line});
        EXPECT_EQ(platform_test::PendingFailures(call), 0u);
        device.UnregisterNotification();
    }
    log_.SetLevel(kDeviceLines);
    Create();
    platform_test::FailCall("SetTimer", ERROR_NOT_ENOUGH_MEMORY);
    Send(RegisterWindowMessageA("WM_CALLBACK_POLL_MSG"), 0, 1);
    EXPECT_TRUE(HasLine("CDevice - Unable to start timer 1. Last error 0x8"));
}

TEST(InterfaceListTest, LeadsFromAPathToTheKeyOfItsUsbDevice)
{
    const std::string before = "SYSTEM\\CurrentControlSet\\Enum\\USB\\";
    const std::string behind = "\\Device Parameters";
    EXPECT_EQ(UsbParametersKey("\\\\?\\usb#vid_fffe&pid_0001#0001#{6b1d}"),
              before + "vid_fffe&pid_0001\\0001" + behind);
    EXPECT_EQ(UsbParametersKey("a#b#c"), before + "b" + behind);
    EXPECT_EQ(UsbParametersKey("a"), before + "a" + behind);
    EXPECT_EQ(UsbParametersKey(""), before + behind);
    const size_t room = 259 - before.size() - behind.size();
    EXPECT_EQ(UsbParametersKey(std::string(room, 'x')).size(), 259u);
    EXPECT_EQ(UsbParametersKey(std::string(room + 1, 'x')), "");
}
