#include "api/handset_fixture.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <system_error>

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
    size_t taken = 0; // bytes of the log file that TakeLog has returned
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
    std::string text;
    for (const fs::directory_entry& entry : fs::directory_iterator(world_->folder)) {
        if (entry.path().extension() == ".log")
            text = (std::ostringstream() << std::ifstream(entry.path()).rdbuf()).str();
    }
    std::istringstream fresh(text.substr(world_->taken));
    world_->taken = text.size();
    std::vector<std::string> lines;
    for (std::string line; std::getline(fresh, line);) {
        if (!line.ends_with('\r'))
            throw std::runtime_error("a log line ends without CR LF: " + line);
        line.pop_back();
        lines.push_back(line.substr(line.find('\t') + 1));
    }
    return lines;
}

void TestBench::Plug()
{
    world_->simulator->Start();
}

simulator::Handset& TestBench::Handset()
{
    return world_->simulator->Control();
}
