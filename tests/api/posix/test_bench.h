// The surroundings of one library on Linux: a folder, a device directory and a registry file of their own, logging on,
// and a handset that is not there until Plug. tests/api/windows has the same for Windows.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "log/log_reader.h"
#include "phn_platform_test.h"
#include "simulator/lines/simulator.h"
#include "support/surroundings.h"

class TestBench
{
public:
    static constexpr uint32_t kAllLines = 0xFFFFF;
    static constexpr uint32_t kExportLines = 0x1FF;

    TestBench()
    {
        std::filesystem::copy_file(PHN_LIBRARY, library_);
        SetLoggingLevel(kExportLines);
    }

    // A copy of the library, so that its log file belongs to this process.
    std::string LibraryPath() const { return library_; }
    const std::filesystem::path& Devices() const { return surroundings_.devices; }
    void SetLoggingLevel(uint32_t level) { surroundings_.SetLogging(level); }
    Lines TakeLog() { return log_.Take(); }

    // Publishes the handset as a USB interface. A library that is loaded then opens it at once.
    void Plug() { simulator_.Start(); }
    // Takes the interface away. The library notices as its messages are dispatched.
    void Unplug() { simulator_.Unplug(); }
    simulator::Handset& Handset() { return simulator_.Control(); }

    // Lets that time pass for the library and for this thread's timers where a test rules the clock.
    static void AdvanceClock(DWORD milliseconds) { platform_test::AdvanceClock(milliseconds); }

private:
    const Surroundings surroundings_;
    const std::filesystem::path library_ = surroundings_.root / "libphnnrv.so";
    LogReader log_{surroundings_.root};
    simulator::Simulator simulator_{surroundings_.devices, simulator::UsbInterfaceName("0001")};
};
