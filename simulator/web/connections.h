// Ends the connections that this program has accepted at a TCP port, so that nobody who reads or writes there waits on.
#pragma once

#include <cstdint>

namespace simulator {

void EndConnections(std::uint16_t port);

} // namespace simulator
