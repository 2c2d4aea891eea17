// The surroundings of one library on Linux: a folder, a device directory and a registry file of their own, logging on,
// and a handset that is not there until Plug. tests/api/windows has the same for Windows.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "log/log_reader.h"
#include "phn_platform_test.h"
#include "simulator/lines/simulator.h"
#include "temporary_folder.h"

class TestBench
{
public:
    static constexpr uint32_t kAllLines = 0xFFFFF;
    static constexpr uint32_t kExportLines = 0x1FF;

    TestBench()
    {
        std::filesystem::create_directory(devices_);
        std::filesystem::copy_file(PHN_LIBRARY, library_);
        setenv("PHNNRV_DEVICES", devices_.c_str(), 1);
        setenv("PHNNRV_REGISTRY", registry_.c_str(), 1);
        SetLoggingLevel(kExportLines);
    }

    // A copy of the library, so that its log file belongs to this process.
    std::string LibraryPath() const { return library_; }
    void SetLoggingLevel(uint32_t level)
    {
        const std::filesystem::path fresh = registry_.string() + ".new";
        std::ofstream file(fresh);
        file << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n\"Logging Level\"=dword:" << std::hex
             << level << "\n";
        file.close();
        if (!file)
            throw std::runtime_error("cannot write " + fresh.string());
        std::filesystem::rename(fresh, registry_);
    }
    // As LogReader takes it.
    Lines TakeLog() { return log_.Take(); }

    // Publishes the handset as a USB interface. A library that is loaded then opens it at once.
    void Plug() { simulator_.Start(); }
    // Takes the interface away. The library notices as its messages are dispatched.
    void Unplug() { simulator_.Unplug(); }
    simulator::Handset& Handset() { return simulator_.Control(); }

    // Lets that time pass for the library and for this thread's timers where a test rules the clock.
    static void AdvanceClock(DWORD milliseconds) { platform_test::AdvanceClock(milliseconds); }

private:
    const TemporaryFolder folder_;
    const std::filesystem::path devices_ = folder_.Path() / "devices";
    const std::filesystem::path registry_ = folder_.Path() / "phnnrv.reg";
    const std::filesystem::path library_ = folder_.Path() / "libphnnrv.so";
    LogReader log_{folder_.Path()};
    simulator::Simulator simulator_{devices_, simulator::UsbInterfaceName("0001")};
};
