// One figure of a benchmark program and its bound: printed, and written down for a report where ./dev bench asks for
// one.
#pragma once

#include <string>

namespace bench {

struct Figure
{
    std::string what;
    double value;
    std::string unit; // empty: a ratio
    double limit;
    bool isLeast = false; // the limit is what the value must reach, not what it may
    // Where it compares: the names of both sides, and their times in microseconds.
    std::string subject = {};
    double subjectTime = 0;
    std::string reference = {};
    double referenceTime = 0;
};

// Prints the figure, and appends it as one line of JSON to the file that PHNNRV_BENCH_FIGURES names, if it does. False
// when the bound is missed.
bool Judge(const Figure& figure);

} // namespace bench
