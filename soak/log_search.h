// Searches what the library writes to its log during a run for what must not stand there. What has been searched is
// given back to the disk where the file system can: a log of everything grows by gigabytes an hour.
#pragma once

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace soak {

class LogSearch
{
public:
    LogSearch(std::filesystem::path folder, std::vector<std::string> secrets);

    // What has come since the last time.
    void Search();

    std::uint64_t Lines() const { return lines_; }
    // The lines that tell one, some of them.
    const std::set<std::string>& Findings() const { return findings_; }

private:
    void SearchFile(const std::filesystem::path& path);

    const std::filesystem::path folder_;
    const std::vector<std::string> secrets_;
    off_t searched_ = 0; // bytes of the one file
    std::uint64_t lines_ = 0;
    std::set<std::string> findings_;
};

} // namespace soak
