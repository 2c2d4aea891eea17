#include "api/handset_fixture.h"

#include <dbt.h>

#include "temporary_folder.h"
#include "windows/com_handset.h"
#include "windows/driver.h"

namespace fs = std::filesystem;

struct TestBench::World
{
    TemporaryFolder folder;
    fs::path library = folder.Path() / "PHNNRV.dll";
    LogReader log{folder.Path()};
    ComHandset handset;
};

TestBench::TestBench() : world_(std::make_unique<World>())
{
    fs::copy_file(driver::BuiltLibrary(), world_->library);
    driver::SetInterfacePresent(false);
    driver::ClearSerialPorts();
    SetLoggingLevel(kExportLines);
}

TestBench::~TestBench()
{
    driver::SetInterfacePresent(false);
    SetLoggingLevel(0); // the next program's code may log without having a log
}

std::string TestBench::LibraryPath() const
{
    return world_->library.string();
}

void TestBench::SetLoggingLevel(uint32_t level)
{
    driver::SetLoggingLevel(level);
}

std::vector<std::string> TestBench::TakeLog()
{
    return world_->log.Take();
}

void TestBench::Plug()
{
    driver::SetInterfacePresent(true);
    driver::SendDeviceChange(DBT_DEVICEARRIVAL);
}

void TestBench::Unplug()
{
    driver::SetInterfacePresent(false);
    driver::SendDeviceChange(DBT_DEVICEREMOVECOMPLETE);
}

void TestBench::AdvanceClock(DWORD) {} // there is one clock, and it runs

simulator::Handset& TestBench::Handset()
{
    return world_->handset.Control();
}
