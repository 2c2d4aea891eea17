// A library's surroundings on Windows (tests/api/posix has Linux's): the machine's registry, a handset behind a port.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include <windows.h>

#include <dbt.h>

#include "log/log_reader.h"
#include "temporary_folder.h"
#include "windows/com_handset.h"
#include "windows/driver.h"

class TestBench
{
public:
    static constexpr uint32_t kAllLines = 0xFFFFF;
    static constexpr uint32_t kExportLines = 0x1FF;

    TestBench()
    {
        std::filesystem::copy_file(driver::BuiltLibrary(), library_);
        driver::SetInterfacePresent(false);
        driver::ClearSerialPorts();
        SetLoggingLevel(kExportLines);
    }
    ~TestBench()
    {
        driver::SetInterfacePresent(false);
        SetLoggingLevel(0); // the next program's code may log without having a log
    }

    std::string LibraryPath() const { return library_.string(); }
    void SetLoggingLevel(uint32_t level) { driver::SetLoggingLevel(level); }
    Lines TakeLog() { return log_.Take(); }

    void Plug()
    {
        driver::SetInterfacePresent(true);
        driver::SendDeviceChange(DBT_DEVICEARRIVAL);
    }
    void Unplug()
    {
        driver::SetInterfacePresent(false);
        driver::SendDeviceChange(DBT_DEVICEREMOVECOMPLETE);
    }
    simulator::Handset& Handset() { return handset_.Control(); }

    static void AdvanceClock(DWORD) {} // there is one clock, and it runs

private:
    const TemporaryFolder folder_;
    const std::filesystem::path library_ = folder_.Path() / "PHNNRV.dll";
    LogReader log_{folder_.Path()};
    ComHandset handset_;
};
