#include "device/device_world.h"

#include <algorithm>

#include "link/exec_command.h"
#include "phn_platform_test.h"

using platform_test::AdvanceClock;
using platform_test::AwaitBlocked;

std::vector<std::string> RecordingOwner::TakeEvents()
{
    const std::scoped_lock lock(mutex_);
    return std::exchange(events_, {});
}

DeviceTest::DeviceTest()
{
    CreateCommandLock();
    g_csDevice.Create();
    CreateCallbackLocks();
    if (!CreateWatchObjects())
        throw std::runtime_error("no events");
    SetDeviceOwner(&owner_);
}

DeviceTest::~DeviceTest()
{
    if (device_) {
        StopWatch();
        device_->UnregisterNotification();
        device_->DestroyDeviceWindow();
        device_.reset();
    }
    owner_.SetDevice(nullptr);
    SetDeviceOwner(nullptr);
    DestroyWatchObjects();
    DestroyCallbackLocks();
    g_csDevice.Destroy();
    DestroyCommandLock();
}

void DeviceTest::Create()
{
    device_ = std::make_unique<CDevice>();
    owner_.SetDevice(device_.get());
    device_->ScanforDevices(kDiagnosticInterface);
    ASSERT_TRUE(device_->RegisterNotification());
    device_->InitPortScanning();
}

void DeviceTest::StartWatch()
{
    AdvanceClock(300);
    ASSERT_TRUE(PumpUntil([] { return WaitForSingleObject(g_evWatchEnded, 0) == WAIT_TIMEOUT; }));
}

void DeviceTest::StopWatch()
{
    if (!std::exchange(isStopped_, true))
        device_->UninitPortScanning();
}

void DeviceTest::NextCycle()
{
    ASSERT_TRUE(AwaitBlocked(15000));
    AdvanceClock(15000);
}

LRESULT DeviceTest::Broadcast(WPARAM event, const GUID& interfaceClass, const std::string& name)
{
    return SendInterfaceMessage(device_->GetWindow(), event, interfaceClass, name);
}

LRESULT DeviceTest::Send(UINT message, WPARAM wParam, LPARAM lParam)
{
    return SendMessageA(device_->GetWindow(), message, wParam, lParam);
}

simulator::Simulator& DeviceTest::Attach(const std::string& name, simulator::PortKind kind)
{
    simulators_.push_back(std::make_unique<simulator::Simulator>(log_.Devices(), name, kind));
    simulators_.back()->Start();
    return *simulators_.back();
}

std::vector<std::string> DeviceTest::TakeLog()
{
    std::vector<std::string> lines = log_.TakeLines();
    for (std::string& line : lines) {
        line.erase(0, line.find(' ', line.find(' ') + 1) + 1);
        if (line.ends_with('\n')) // some end themselves
            line.pop_back();
    }
    return lines;
}

bool DeviceTest::HasLine(const std::string& text)
{
    const auto lines = TakeLog();
    return std::ranges::find(lines, text) != lines.end();
}
