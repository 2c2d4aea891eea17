// The files that phnsim's options name.
#pragma once

#include "simulator/phnsim/options.h"

namespace simulator {

// Throws std::invalid_argument when two options name one file, which one of them would write over. Before any is made.
void CheckFilesDiffer(const Options& options);

} // namespace simulator
