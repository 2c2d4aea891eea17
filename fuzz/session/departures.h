// The ways in which a seed's reply goes wrong, in the bytes that HostileReply reads. Used by the program that writes
// the seeds of the session target.
#pragma once

#include <span>

#include "fuzz/input.h"

namespace fuzz {

struct Departure
{
    const char* name;
    Bytes (*encode)(Bytes payload);
};

// The first is none.
std::span<const Departure> Departures();
inline const Departure& HonestReply()
{
    return Departures().front();
}

} // namespace fuzz
