// What a host did and what the handset made of it, decoded: what is traced, logged and expected.
// Made by the session, told to the handset's watcher.
#pragma once

#include "simulator/commands/fields.h"
#include "simulator/handset/fault.h"
#include "simulator/handset/frame.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

// Beside the numbers of commands and kAtCommands.
constexpr std::uint32_t kRejected = 0xFFFFFFFE;   // what was turned away: garbage, a malformed or an unknown request
constexpr std::uint32_t kPortClosed = 0xFFFFFFFD; // the host has closed the port

struct Exchange
{
    std::uint32_t command = 0; // as the host has sent it
    std::string name{};
    std::string rejection{};                 // why it was turned away; empty: it was not
    std::optional<std::uint32_t> sequence{}; // of a framed request
    Fields request{};                        // without the header
    Fields reply{};                          // status, result where there is one, and what follows
    std::vector<Fault> faults{};             // those that struck
    Bytes received{};                        // as they came over the line; of what was overlong, the beginning
    Bytes sent{};                            // as they go over it, what the faults leave of them

    // What it counts as.
    std::uint32_t Kind() const { return rejection.empty() ? command : kRejected; }
};

} // namespace simulator
