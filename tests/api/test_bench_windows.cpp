#include "api/handset_fixture.h"

#include <dbt.h>

#include "windows/com_handset.h"
#include "windows/driver.h"

namespace fs = std::filesystem;

namespace {

fs::path MakeTemporaryFolder()
{
    static unsigned count = 0;
    const fs::path folder = fs::temp_directory_path() /
                            ("phnnrv-test-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++count));
    fs::create_directory(folder);
    return folder;
}

} // namespace

struct TestBench::World
{
    fs::path folder = MakeTemporaryFolder();
    fs::path library = folder / "PHNNRV.dll";
    LogReader log{folder};
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
    SetLoggingLevel(0);      // the next program's code may log without having a log
    std::error_code ignored; // a folder that stays behind is no failure of the test
    fs::remove_all(world_->folder, ignored);
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
