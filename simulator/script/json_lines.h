// What phnsim tells to programs: JSON lines, one object each (docs/simulator.md).
// The JSON library stays behind this header, because it costs seconds per file that includes it.
#pragma once

#include "simulator/handset/exchange.h"
#include "simulator/handset/utc_time.h"

#include <string>

namespace simulator {

std::string ToJsonLine(const Exchange& exchange, Moment time);

// The port is there, and the panel at `web`, which is empty where there is none.
std::string ReadyJsonLine(const std::string& model, const std::string& port, const std::string& web);

} // namespace simulator
