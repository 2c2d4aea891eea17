// What happens on the line to a host, one thing after the other. Made by the session, carried out by the transports.
#pragma once

#include "simulator/handset/frame.h"

#include <chrono>

namespace simulator {

// One thing to do on the line, `delay` after the one before it.
struct Step
{
    enum class Kind
    {
        Send,
        HangUp,
        Unplug,
    };
    Kind kind = Kind::Send;
    std::chrono::milliseconds delay{0};
    Bytes bytes{};
};

} // namespace simulator
