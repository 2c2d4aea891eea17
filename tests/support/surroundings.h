// A test's or host's own world on Linux: an empty device directory, and a registry file that is not there yet.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "temporary_folder.h"

class Surroundings
{
    const TemporaryFolder folder;

public:
    Surroundings()
    {
        std::filesystem::create_directory(devices);
        setenv("PHNNRV_DEVICES", devices.c_str(), 1);
        setenv("PHNNRV_REGISTRY", registry.c_str(), 1);
    }

    // A device of this name, which leads nowhere.
    void Plug(std::string_view name) const { std::filesystem::create_symlink("/nowhere", devices / name); }

    // Writes the registry file in place, as an editor may.
    void WriteRegistry(std::string_view text) const { std::ofstream(registry) << text; }

    // Puts a new file in the registry file's place.
    void ReplaceRegistry(std::string_view text) const
    {
        std::ofstream(root / "made") << text;
        std::filesystem::rename(root / "made", registry);
    }

    // A new registry file with the library's settings: this logging level, if any, then more values, and more keys.
    void SetLogging(std::optional<unsigned> level, const std::string& more = {}) const
    {
        std::ostringstream text;
        text << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n";
        if (level)
            text << "\"Logging Level\"=dword:" << std::hex << *level << '\n';
        ReplaceRegistry(text.str() + more);
    }

    const std::filesystem::path root = folder.Path();
    const std::filesystem::path devices = root / "devices";
    const std::filesystem::path registry = root / "phnnrv.reg";
};
