// The short runs: one thing very often.
#pragma once

#include <cstdint>

namespace soak {

class Surroundings;

// Unplugs the handset at a random byte of a reply, so often; the call that waits for it returns at once. Prints a
// report; false when something was off.
bool RunUnplugs(const Surroundings& surroundings, unsigned count, std::uint32_t seed);

// Loads and unloads the library, every other time during a scan of the serial ports. Likewise.
bool RunLoads(const Surroundings& surroundings, unsigned count);

} // namespace soak
