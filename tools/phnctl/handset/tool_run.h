// This tool run once more, as a process of its own, with what it says kept; also with its way to the handset recorded.
// tool_run_none.cpp takes the place of tool_run_recorded.cpp where there are no pseudo terminals.
#pragma once

#include <string>
#include <vector>

namespace phnctl {

struct ToolRun
{
    int status = 0; // the exit status; 256 + signal when a signal ended it
    std::string out;
    std::string err;
};

bool CanRunTool();

// It reads nothing. Throws Failure when it does not start.
ToolRun RunTool(const std::vector<std::string>& words);

// The same, with every port that the library would ask led through this process. Adds to `recordings` what went over
// each of them, masked (docs/simulator.md): nothing where no port is free.
ToolRun RunToolRecorded(const std::vector<std::string>& words, std::vector<std::string>& recordings);

// "Linux 6.1.0 x86_64"
std::string SystemName();

} // namespace phnctl
