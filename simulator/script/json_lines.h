// What phnsim tells to programs: JSON lines, one object each (docs/simulator.md).
// The JSON library stays behind this header, because it costs seconds per file that includes it.
#pragma once

#include "simulator/handset/exchange.h"

#include <chrono>
#include <string>

namespace simulator {

std::string ToJsonLine(const Exchange& exchange, std::chrono::system_clock::time_point time);

// The port is there, and the panel at `web`, which is empty where there is none.
std::string ReadyJsonLine(const std::string& model, const std::string& port, const std::string& web);

} // namespace simulator
