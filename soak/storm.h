// The long run: a host of sixteen threads against a handset with two ports and every fault of the simulator, which is
// unplugged and comes back, on a machine that is suspended and wakes up.
#pragma once

#include <cstdint>

namespace soak {

class Surroundings;

// Prints a report; false when something was off.
bool RunStorm(const Surroundings& surroundings, double minutes, std::uint32_t seed);

} // namespace soak
