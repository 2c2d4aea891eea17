#include "api/handset_fixture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "phn_platform_test.h"
#include "simulator/lines/simulator.h"
#include "temporary_folder.h"

namespace fs = std::filesystem;

struct TestBench::World
{
    TemporaryFolder folder;
    fs::path devices = folder.Path() / "devices";
    fs::path registry = folder.Path() / "phnnrv.reg";
    fs::path library = folder.Path() / "libphnnrv.so";
    std::optional<simulator::Simulator> simulator;
    LogReader log{folder.Path()};
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

TestBench::~TestBench() = default;

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
