// A host's line connected to another handset: every byte goes on as it comes, both ways.
#pragma once

#include "simulator/lines/line.h"
#include "simulator/lines/simulator.h"

#include <functional>

namespace simulator {

// Opens the other handset's port anew for each line, which ends when that port does. Calls `gone` then, on a thread
// that the line waits for.
ConversationMaker BridgeTo(LineOpener handset, std::function<void()> gone);

} // namespace simulator
