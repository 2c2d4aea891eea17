#include "api/handset_fixture.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "phn_platform_test.h"
#include "simulator/simulator.h"

namespace fs = std::filesystem;

namespace {

fs::path MakeTemporaryFolder()
{
    std::string name = (fs::temp_directory_path() / "phnnrv-test-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::system_error(errno, std::generic_category(), name);
    return name;
}

} // namespace

struct TestBench::World
{
    fs::path folder = MakeTemporaryFolder();
    fs::path devices = folder / "devices";
    fs::path registry = folder / "phnnrv.reg";
    fs::path library = folder / "libphnnrv.so";
    std::optional<simulator::Simulator> simulator;
    LogReader log{folder};
};

TestBench::TestBench() : world_(std::make_unique<World>())
{
    fs::create_directory(world_->devices);
    fs::copy_file(PHN_LIBRARY, world_->library);
    setenv("PHNNRV_DEVICES", world_->devices.c_str(), 1);
    setenv("PHNNRV_REGISTRY", world_->registry.c_str(), 1);
    SetLoggingLevel(kExportLines);
    world_->simulator.emplace(world_->devices, simulator::UsbInterfaceName("0001"));
}

TestBench::~TestBench()
{
    world_->simulator.reset();
    std::error_code ignored; // a folder that stays behind is no failure of the test
    fs::remove_all(world_->folder, ignored);
}

std::string TestBench::LibraryPath() const
{
    return world_->library;
}

void TestBench::SetLoggingLevel(uint32_t level)
{
    const fs::path fresh = world_->registry.string() + ".new";
    std::ofstream file(fresh);
    file << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n\"Logging Level\"=dword:" << std::hex
         << level << "\n";
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + fresh.string());
    fs::rename(fresh, world_->registry);
}

std::vector<std::string> TestBench::TakeLog()
{
    return world_->log.Take();
}

void TestBench::Plug()
{
    world_->simulator->Start();
}

void TestBench::Unplug()
{
    world_->simulator->Unplug();
}

void TestBench::AdvanceClock(DWORD milliseconds)
{
    platform_test::AdvanceClock(milliseconds);
}

simulator::Handset& TestBench::Handset()
{
    return world_->simulator->Control();
}
