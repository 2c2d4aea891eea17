#include "surroundings.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace soak {

namespace fs = std::filesystem;

Surroundings::Surroundings(double scale, std::uint32_t level)
    : folder_(fs::temp_directory_path() / ("phnnrv-soak-" + std::to_string(getpid())))
{
    fs::create_directory(folder_);
    fs::copy_file(PHN_LIBRARY, LibraryPath());
    const fs::path registry = folder_ / "phnnrv.reg";
    std::ofstream(registry) << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\HARDWARE\\DEVICEMAP\\SERIALCOMM]\n"
                            << "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n\"Logging Level\"=dword:" << std::hex
                            << level << "\n";
    setenv("PHNNRV_DEVICES", Devices().c_str(), 1);
    setenv("PHNNRV_REGISTRY", registry.c_str(), 1);
    setenv("PHNNRV_TIME_SCALE", std::to_string(scale).c_str(), 1);
    setenv("PHNNRV_PROMPT_READS", "1", 0);
    setenv("PHNNRV_TICK_COUNT", "4294900000", 1); // 32 bits of it are full within a second
}

Surroundings::~Surroundings()
{
    std::error_code ignored; // a folder that stays behind is no finding
    fs::remove_all(folder_, ignored);
}

} // namespace soak
