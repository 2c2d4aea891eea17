#include "platform/surroundings.h"

#include <cstdlib>
#include <fstream>

Surroundings::Surroundings() : devices(root / "devices"), registry(root / "phnnrv.reg")
{
    std::filesystem::create_directory(devices);
    setenv("PHNNRV_DEVICES", devices.c_str(), 1);
    setenv("PHNNRV_REGISTRY", registry.c_str(), 1);
}

void Surroundings::Plug(std::string_view name, const char* target) const
{
    std::filesystem::create_symlink(target, devices / name);
}

void Surroundings::Unplug(std::string_view name) const
{
    std::filesystem::remove(devices / name);
}

void Surroundings::WriteRegistry(std::string_view text) const
{
    std::ofstream(registry) << text;
}

void Surroundings::ReplaceRegistry(std::string_view text) const
{
    const auto made = root / "made";
    std::ofstream(made) << text;
    std::filesystem::rename(made, registry);
}
