// A device object as the library makes it, on the test's thread, with an owner that writes down what it is told.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "link/device.h"
#include "link/interface_list.h"
#include "log/log_capture.h"
#include "simulator/lines/simulator.h"
#include "support/messages.h"

// What the device object tells its owner, in order: "opened", "lost" or "released".
class RecordingOwner final : public CDeviceOwner
{
public:
    std::shared_ptr<COpenPort> GetCurrentPort() override { return device_ ? device_->GetPort() : nullptr; }
    void NotifyDeviceState(bool connected) override { Record(connected ? "opened" : "lost"); }
    void DestroyObjects() override PHN_REQUIRES(g_csCallbackPoll, g_csCallbackRemoved) { Record("released"); }
    void PollCallbacks(HWND, HANDLE) override {}

    std::vector<std::string> TakeEvents();
    void SetDevice(CDevice* device) { device_ = device; }

private:
    void Record(const char* event)
    {
        const std::scoped_lock lock(mutex_);
        events_.emplace_back(event);
    }

    std::mutex mutex_;
    std::vector<std::string> events_;
    CDevice* device_ = nullptr;
};

class DeviceTest : public testing::Test
{
protected:
    using Events = std::vector<std::string>;

    static constexpr DWORD kDeviceLines = 0x406;

    DeviceTest();
    ~DeviceTest() override;

    // What the library does on load: look for a USB handset, register for notifications, arm the start timer.
    void Create();
    // Lets the start timer fire: the watch thread runs from here on, and its first cycle begins.
    void StartWatch();
    // Ends the watch for good, as unload does.
    void StopWatch();
    // Waits until the watch thread has finished a cycle, and begins the next one.
    void NextCycle();

    // Sends the window a device message as the system does.
    LRESULT Broadcast(WPARAM event, const GUID& interfaceClass, const std::string& name);
    LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam = 0);

    simulator::Simulator& Attach(const std::string& name, simulator::PortKind kind = simulator::PortKind::Diagnostic);
    void WriteRegistry(const std::string& keys) { log_.SetLevel(kDeviceLines, keys); }
    // The device object's lines since the last call, without time, category and level.
    std::vector<std::string> TakeLog();
    bool HasLine(const std::string& text);

    CDevice& Device() { return *device_; }
    bool IsOpen() { return device_->GetMDMHandle() != nullptr; }

    LogCapture log_{kDeviceLines};
    RecordingOwner owner_;

private:
    std::unique_ptr<CDevice> device_;
    std::vector<std::unique_ptr<simulator::Simulator>> simulators_;
    bool isStopped_ = false;
};
