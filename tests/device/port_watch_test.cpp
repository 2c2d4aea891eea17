// The search for a handset on a plain serial port, and the watch over the one that was found.
#include <algorithm>

#include "device/device_world.h"
#include "phn_platform_test.h"

using platform_test::AdvanceClock;
using platform_test::AwaitBlocked;

constexpr std::uint32_t kStartup = 1;
constexpr DWORD kProbe = 3000;

using PortWatchTest = DeviceTest;

TEST_F(PortWatchTest, ProbesOfBothHalvesTakeTurnsAndTheFirstHandsetWins)
{
    // com1 and com3 are one half, com2 and com4 the other. Each silent port costs its own three seconds.
    simulator::Simulator* const silent[] = {&Attach("com1"), &Attach("com2"), &Attach("com3")};
    simulator::Simulator& handset = Attach("com4");
    for (simulator::Simulator* port : silent)
        port->Control().AddFault("silence");
    const auto probes = [&] {
        return silent[0]->Control().Requests(kStartup) + silent[1]->Control().Requests(kStartup) +
               silent[2]->Control().Requests(kStartup);
    };
    Create();
    StartWatch();
    std::uint64_t turns = 0;
    while (PumpUntil([&] { return IsOpen() || probes() > turns; }) && !IsOpen()) {
        ASSERT_TRUE(AwaitBlocked(kProbe));
        EXPECT_EQ(probes(), ++turns) << "two probes at a time";
        AdvanceClock(kProbe);
    }
    ASSERT_TRUE(IsOpen());
    EXPECT_GE(turns, 2u);
    EXPECT_EQ(Device().GetPort()->GetPath(), "\\\\?\\com4");
    const std::vector<std::string> lines = TakeLog();
    for (const char* line : {"OpenDiagPort \\\\?\\com4 Succeeded", "returned true \\\\?\\com4"})
        EXPECT_EQ(std::ranges::count(lines, std::string("CDevice::ScanPorts - ") + line), 1) << line;
    EXPECT_EQ(handset.Control().Requests(kStartup), 1u);
}

TEST_F(PortWatchTest, AsksTheOpenPortEverySeventhCycleAndDropsItWhenItNoLongerAnswers)
{
    simulator::Simulator& handset = Attach("com5");
    Create();
    StartWatch();
    EXPECT_TRUE(PumpUntil([this] { return IsOpen(); }));
    for (int cycle = 1; cycle <= 14; ++cycle) {
        EXPECT_TRUE(IsOpen()) << cycle;
        NextCycle();
        ASSERT_TRUE(AwaitBlocked(15000));
        EXPECT_EQ(handset.Control().Requests(kStartup), cycle < 7 ? 1u : 2u) << cycle;
        if (cycle == 7)
            handset.Unplug();
    }
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(owner_.TakeEvents(), (Events{"opened", "lost", "released"}));

    handset.Replug();
    NextCycle();
    EXPECT_TRUE(PumpUntil([this] { return IsOpen(); }));
    EXPECT_EQ(owner_.TakeEvents(), Events{"opened"});
}

TEST_F(PortWatchTest, APortOfTheMakersUsbDeviceEndsItsHalfOfTheScan)
{
    // The interface is there but cannot be opened, so the search goes on over the serial ports.
    std::filesystem::create_symlink("nowhere", log_.Devices() / simulator::UsbInterfaceName("0001"));
    WriteRegistry("[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\USB\\vid_fffe&pid_0001\\0001\\"
                  "Device Parameters]\n\"PortName\"=\"COM1\"\n");
    simulator::Simulator& usb = Attach("com1");
    simulator::Simulator& behind = Attach("com3");
    simulator::Simulator& other = Attach("com2");
    other.Control().AddFault("hangup");
    Create();
    StartWatch();
    ASSERT_TRUE(AwaitBlocked(15000));
    EXPECT_TRUE(HasLine("CDevice::ScanPorts - the port to be opened is an USB"));
    EXPECT_EQ(usb.Control().Requests(), 0u);
    EXPECT_EQ(behind.Control().Requests(), 0u);
    EXPECT_EQ(other.Control().Requests(kStartup), 1u);
    EXPECT_FALSE(IsOpen());
}

TEST_F(PortWatchTest, AUsbHandsetThatNothingAnnouncesAnyMoreIsFoundByTheNextCycle)
{
    simulator::Simulator& first = Attach(simulator::UsbInterfaceName("0001"));
    Attach(simulator::UsbInterfaceName("0002")); // there when the library is loaded
    Create();
    StartWatch();
    first.Unplug();
    ASSERT_TRUE(PumpUntil([this] { return !IsOpen(); }));
    NextCycle();
    EXPECT_TRUE(PumpUntil([this] { return IsOpen(); }));
    EXPECT_EQ(Device().GetPort()->GetPath(), "\\\\?\\" + simulator::UsbInterfaceName("0002"));
    EXPECT_EQ(owner_.TakeEvents(), (Events{"opened", "lost", "released", "opened"}));
}

TEST_F(PortWatchTest, StoppingEndsAScanThatWaitsForASilentPort)
{
    for (const char* name : {"com1", "com2", "com3", "com4"})
        Attach(name).Control().AddFault("silence");
    Create();
    StartWatch();
    ASSERT_TRUE(AwaitBlocked(kProbe));
    const ULONGLONG begin = GetTickCount64();
    StopWatch();
    EXPECT_LT(GetTickCount64() - begin, kProbe); // the second of grace, no probe's time-out
    EXPECT_TRUE(HasLine("CDevice::ScanPorts will exit as main thread wants to exit"));
}

TEST_F(PortWatchTest, StoppingBeforeTheStartTimerDoesNotWaitForAThread)
{
    Create();
    StopWatch();
    const std::vector<std::string> lines = TakeLog();
    EXPECT_EQ(lines.back(), "CDevice::UninitPortScanning - End");
    EXPECT_EQ(std::ranges::count(lines, "BT_Thread - Ending thread"), 0);
}

TEST_F(PortWatchTest, WhatCannotBeMadeLeavesTheDeviceWorkingAndIsTriedAgain)
{
    Attach("com1");
    Create();
    const std::pair<const char*, DWORD> calls[] = {{"CreateEventA", 0}, {"CreateEventA", 1}, {"CreateThread", 1}};
    for (const auto& [call, behind] : calls) {
        platform_test::FailCall(call, ERROR_NOT_ENOUGH_MEMORY, behind);
        AdvanceClock(3000);
        EXPECT_TRUE(PumpUntil([call = call] { return platform_test::PendingFailures(call) == 0; })) << call;
        EXPECT_TRUE(HasLine("CDevice::OnTimer - Unable to start the port watch. Last error 0x8")) << call;
    }
    simulator::Simulator& usb = Attach(simulator::UsbInterfaceName("0001"));
    EXPECT_TRUE(PumpUntil([this] { return IsOpen(); }));
    EXPECT_EQ(usb.Control().Rejected(), 0u);
    AdvanceClock(3000);
    EXPECT_TRUE(PumpUntil([] { return WaitForSingleObject(g_evWatchEnded, 0) == WAIT_TIMEOUT; }));
}

TEST_F(PortWatchTest, AWaitThatFailsIsTriedAgain)
{
    Create();
    StartWatch();
    ASSERT_TRUE(AwaitBlocked(15000));
    const char* const waits[] = {"WaitForSingleObject", "WaitForMultipleObjects"}; // between cycles, for the worker
    for (const char* wait : waits)
        platform_test::FailCall(wait, ERROR_NOT_ENOUGH_MEMORY);
    NextCycle(); // without a port, so that nobody but the watch and its worker waits
    for (const char* wait : waits)
        EXPECT_TRUE(PumpUntil([wait] { return platform_test::PendingFailures(wait) == 0; })) << wait;
    Attach("com1");
    NextCycle();
    EXPECT_TRUE(PumpUntil([this] { return IsOpen(); }));
    EXPECT_TRUE(HasLine("BT_Thread - WaitForSingleObject failed with error = 0x8."));
}
