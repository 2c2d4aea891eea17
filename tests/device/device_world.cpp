#include "device/device_world.h"

#include <dbt.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <sstream>
#include <utility>

#include "link/exec_command.h"
#include "log/log_file.h"
#include "phn_platform_test.h"

namespace fs = std::filesystem;
using platform_test::AdvanceClock;
using platform_test::AwaitBlocked;

std::shared_ptr<COpenPort> RecordingOwner::GetCurrentPort()
{
    return device_ ? device_->GetPort() : nullptr;
}

std::vector<std::string> RecordingOwner::TakeEvents()
{
    const std::scoped_lock lock(mutex_);
    return std::exchange(events_, {});
}

void RecordingOwner::Record(const char* event)
{
    const std::scoped_lock lock(mutex_);
    events_.emplace_back(event);
}

DeviceTest::DeviceTest()
{
    setenv("PHNNRV_DEVICES", devices_.Path().c_str(), 1);
    setenv("PHNNRV_REGISTRY", (folder_.Path() / "phnnrv.reg").c_str(), 1);
    fs::current_path(folder_.Path());
    WriteRegistry("");
    CreateLogLock();
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
    CloseLog();
    DestroyWatchObjects();
    DestroyCallbackLocks();
    g_csDevice.Destroy();
    DestroyCommandLock();
    DestroyLogLock();
    fs::current_path("/");
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

bool DeviceTest::PumpUntil(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        MSG message;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&message);
    }
    return true;
}

LRESULT DeviceTest::Broadcast(WPARAM event, const GUID& interfaceClass, const std::string& name)
{
    std::vector<std::byte> bytes(sizeof(DEV_BROADCAST_DEVICEINTERFACE_A) + name.size());
    auto* record = new (bytes.data()) DEV_BROADCAST_DEVICEINTERFACE_A{};
    record->dbcc_size = static_cast<DWORD>(bytes.size());
    record->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    record->dbcc_classguid = interfaceClass;
    std::memcpy(bytes.data() + offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name), name.data(), name.size());
    return Send(WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(record));
}

LRESULT DeviceTest::Send(UINT message, WPARAM wParam, LPARAM lParam)
{
    return SendMessageA(device_->GetWindow(), message, wParam, lParam);
}

simulator::Simulator& DeviceTest::Attach(const std::string& name, simulator::PortKind kind)
{
    simulators_.push_back(std::make_unique<simulator::Simulator>(devices_.Path(), name, kind));
    simulators_.back()->Start();
    return *simulators_.back();
}

void DeviceTest::WriteRegistry(const std::string& keys)
{
    const fs::path fresh = folder_.Path() / "fresh";
    std::ofstream(fresh) << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n"
                            "\"Logging Level\"=dword:00000406\n\n"
                         << keys;
    fs::rename(fresh, folder_.Path() / "phnnrv.reg");
}

std::vector<std::string> DeviceTest::TakeLog()
{
    std::string text;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_.Path())) {
        if (entry.path().extension() == ".log")
            text = (std::ostringstream() << std::ifstream(entry.path()).rdbuf()).str();
    }
    std::istringstream fresh(text.substr(taken_));
    taken_ = text.size();
    std::vector<std::string> lines;
    for (std::string line; std::getline(fresh, line);) {
        const size_t text_begin = line.rfind('\t') + 1;
        line = line.substr(text_begin, line.find('\r') - text_begin);
        if (!line.empty())
            lines.push_back(line);
    }
    return lines;
}

bool DeviceTest::HasLine(const std::string& text)
{
    const auto lines = TakeLog();
    return std::ranges::find(lines, text) != lines.end();
}
