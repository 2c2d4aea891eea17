// A host's session with the library. The whole one: load, start, one call of each export, callbacks, unplug, replug,
// end, unload. The short one: load, start, one call, end, unload. It goes on whatever fails, as a stubborn host would,
// and tells what came of each call.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "failures/handset_process.h"
#include "support/surroundings.h"

// A second of the library's lasts that much less.
constexpr int kTimeDivisor = 30;

struct Outcome
{
    bool HasSucceeded() const { return code == success; }

    std::string name; // of the export
    uint32_t success; // the code that it has when nothing fails
    uint32_t code;
    std::string output; // what it has written to the host's memory
    std::chrono::milliseconds time;
    size_t heldLocks = 0; // after it
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

// How the handset is attached. On USB the library reads promptly.
enum class Attachment
{
    Usb,
    Serial,
};

// The surroundings of a host: a link to the library with its log beside it, logging of everything.
struct HostFolder : Surroundings
{
    explicit HostFolder(Attachment attached);

    const std::filesystem::path library = root / "libphnnrv.so";
    const Attachment attachment;
};

struct SessionPlan
{
    std::string subject{};          // the export that a short session calls; empty: a whole session
    std::function<void()> before{}; // the call of the subject
    std::function<void()> after{};
    unsigned startups = 1; // how often the start is tried: a serial handset may take a while
};

SessionReport RunSession(const HostFolder& folder, const HandsetProcess& handset, const SessionPlan& plan);
