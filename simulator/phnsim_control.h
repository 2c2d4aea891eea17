// The control lines of phnsim: one line of text in, one answer out. Used by phnsim for its standard input.
// A new control line is one row of the table in phnsim_control.cpp.
#pragma once

#include "simulator/simulator.h"

#include <functional>
#include <string>
#include <string_view>

namespace simulator {

struct Control
{
    Simulator& simulator;
    std::string dataFile; // where "save" and "load" go when no file is named
    std::function<void(std::string_view)> print;
    Handset::TraceSink trace; // where "trace on" sends the frames
    bool isOver = false;
};

// Carries out one line. What is wrong with it is printed as "error: ...".
void ExecuteControlLine(Control& control, std::string_view line);

} // namespace simulator
