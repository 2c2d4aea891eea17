#include "platform/surroundings.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string>
#include <system_error>

namespace {

std::filesystem::path MakeRoot()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "surroundings.XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::system_error(errno, std::generic_category());
    return pattern;
}

} // namespace

Surroundings::Surroundings() : root(MakeRoot()), devices(root / "devices"), registry(root / "phnnrv.reg")
{
    std::filesystem::create_directory(devices);
    setenv("PHNNRV_DEVICES", devices.c_str(), 1);
    setenv("PHNNRV_REGISTRY", registry.c_str(), 1);
}

Surroundings::~Surroundings()
{
    std::filesystem::remove_all(root);
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
