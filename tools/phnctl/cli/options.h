// The options that every command takes. Used by whatever works as they say; command_options.cpp makes them of the
// command line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace phnctl {

// Where the label files are that come with the tool.
std::filesystem::path LabelFolder();

struct Options
{
    bool simulator = false;
    bool json = false;
    unsigned waitSeconds = 40;
    std::string library; // empty: the usual places
    std::string labels;  // the folder of the label files; empty: the shipped one
    std::optional<std::uint32_t> logLevel;
    bool slowReads = false;
};

} // namespace phnctl
