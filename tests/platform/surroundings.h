// A world of the stand-in's own for one test: an empty device directory and a registry file that is not there yet. For
// tests on Linux.
#pragma once

#include <filesystem>
#include <string_view>

#include "temporary_folder.h"

class Surroundings
{
public:
    Surroundings();

    // A device of this name, which leads nowhere unless a target is given.
    void Plug(std::string_view name, const char* target = "/nowhere") const;
    void Unplug(std::string_view name) const;

    // Writes the registry file in place, as an editor may.
    void WriteRegistry(std::string_view text) const;

    // Puts a new file in the registry file's place.
    void ReplaceRegistry(std::string_view text) const;

private:
    const TemporaryFolder folder;

public:
    const std::filesystem::path root = folder.Path();
    const std::filesystem::path devices;
    const std::filesystem::path registry;
};
