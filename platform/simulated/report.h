// What the simulated handset has to say to a host's developer: it goes to the control pipe's client, and, with a
// script, into a file beside the library. What is wrong goes to the library's log and to standard error as well.
#pragma once

#include "simulator/lines/line.h"

#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <string_view>

namespace simulated {

class Report
{
public:
    // A file that cannot be written is done without.
    void OpenFile(const std::filesystem::path& file);
    // Null: nobody listens any more.
    void SetClient(simulator::Line* client);

    void Print(std::string_view line);
    void TellWrong(const std::string& sentence);

private:
    std::mutex mutex_;
    std::ofstream file_;
    simulator::Line* client_ = nullptr;
};

} // namespace simulated
