// The file beside the library that a script's run is reported in, and what is wrong, which also goes to the library's
// log and to standard error.
#pragma once

#include "simulator/lines/handle_line_windows.h"

#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>

namespace simulated {

class Report
{
public:
    // Empties the file. Nobody else can write it or take it away from here on: it is this process's script that it
    // tells of. Throws std::system_error.
    void Open(const std::filesystem::path& file);

    // To the file, if there is one.
    void Print(std::string_view line);
    // Could all be written?
    bool IsWhole();

private:
    std::mutex mutex_;
    simulator::Handle file_;
    bool isWhole_ = true;
};

// To the log and to standard error.
void TellWrong(const std::string& sentence);

} // namespace simulated
