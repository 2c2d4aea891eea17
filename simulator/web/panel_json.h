// What the panel's pages are told, as JSON. The JSON library stays behind this header, because it costs seconds per
// file that includes it.
#pragma once

#include "simulator/handset/exchange.h"
#include "simulator/lines/simulator.h"
#include "simulator/web/feed.h"

#include <chrono>
#include <string>
#include <string_view>

namespace simulator {

// Each part of the handset's state, named as in the state file; "plugged"; "faults", those that are switched on; and
// what never changes, as "vocabulary": the kinds of faults and the commands.
Feed::Parts StateParts(Simulator& simulator);

// As in the log, with the bytes in hexadecimal digits, as "received" and "sent".
std::string ExchangeJson(const Exchange& exchange, std::chrono::system_clock::time_point time);

std::string TextJson(std::string_view text);

} // namespace simulator
