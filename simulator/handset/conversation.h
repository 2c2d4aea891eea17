// Who answers a host on one opened line: the simulated handset's session, a recording, another handset.
#pragma once

#include "simulator/handset/step.h"

#include <cstdint>
#include <span>
#include <vector>

namespace simulator {

class Conversation
{
public:
    virtual ~Conversation() = default;

    // What to do about what the host has sent.
    virtual std::vector<Step> Receive(std::span<const std::uint8_t> bytes) = 0;
};

} // namespace simulator
