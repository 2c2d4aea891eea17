// A host's session with the library. The whole one: load, start, one call of each export, callbacks, unplug, replug,
// end, unload. The short one: load, start, the first call, end, unload. It goes on whatever fails, as a stubborn host
// would, and tells what came of each call.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "failures/handset_process.h"

// A second of the library's lasts that much less.
constexpr int kTimeDivisor = 50;

struct Outcome
{
    std::string name; // of the export
    uint32_t success; // the code that it has when nothing fails
    uint32_t code;
    std::string output; // what it has written to the host's memory
    std::chrono::milliseconds time;
};

struct SessionReport
{
    bool isLoaded = false;
    bool isUnloaded = false; // or was never loaded
    std::vector<Outcome> outcomes{};
    bool wasChangeTold = false;
    bool wasRemovalTold = false;
    std::string log{};
};

// The surroundings of a host: the library's own copy with its log beside it, logging of everything, prompt reads.
struct HostFolder
{
    explicit HostFolder(const std::filesystem::path& folder);

    std::filesystem::path devices;
    std::filesystem::path library;
};

enum class Length
{
    Whole,
    Short,
};

SessionReport RunSession(const HostFolder& folder, const HandsetProcess& handset, Length length);
