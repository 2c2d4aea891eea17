// What phnsim was asked for on its command line. Used by phnsim.cpp; the command-line library stays behind this header,
// because it costs seconds per file that includes it.
#pragma once

#include "simulator/phnsim/port_options.h"
#include "simulator/recording/recording.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace simulator {

struct Options
{
    PortChoice port;
    std::string data;
    std::vector<std::string> faults;
    std::uint32_t seed = 1;
    bool trace = false;
    bool hex = false;
    std::string script;
    std::string log;
    std::string record;
    std::string pcap;
    std::vector<std::string> toPcap; // a recording and the file that it is written into; empty: not asked for
    std::vector<std::string> mask;   // likewise
    std::string between;             // another handset's port
    std::string replay;
    Recording recording{};                // of `replay`
    std::optional<std::uint16_t> webPort; // 0: one that is free
    bool strict = false;
    bool ready = false;
    bool once = false;
    bool listCommands = false;
};

// The options, or the exit status when there is nothing left to do (help was shown, or what was wrong on standard
// error). Throws what ReadRecording throws.
std::variant<Options, int> ParseOptions(int argumentCount, char** arguments);

} // namespace simulator
