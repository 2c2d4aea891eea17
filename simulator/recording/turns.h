// A recording as a conversation: each request of the host with what the handset did about it.
#pragma once

#include "simulator/handset/step.h"
#include "simulator/recording/recording.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

// What hosts ask of their own accord, as often as they like: connection, network, battery, and what has changed.
bool IsPoll(std::uint32_t command);
// Whether the same question may have another answer after it. An unknown command may do anything.
bool Changes(std::uint32_t command);

struct Turn
{
    unsigned line = 0; // of the request, in the file
    // What is compared: the request's record, or all bytes of what is no frame.
    Bytes request{};
    std::optional<std::uint32_t> sequence{};
    Exchange exchange{};
    bool isOptional = false; // a poll, or a question asked before of which nothing can have changed since
    std::vector<Step> steps{};
};

// "read contact id=3"
std::string Describe(const Exchange& exchange);

// The request of a dissected packet, as Turn has it.
Bytes RequestOf(const Dissection& dissection);

std::vector<Turn> TurnsOf(const Recording& recording);

} // namespace simulator
