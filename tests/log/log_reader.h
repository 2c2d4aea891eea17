// What a library or a test process writes to the log files in a folder.
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

class LogReader
{
public:
    explicit LogReader(std::filesystem::path folder) : folder_(std::move(folder)) {}

    // The files' names, and what they hold.
    std::vector<std::string> Files() const;
    std::string Text() const;

    // What was logged since the last call: category, tab, level, tab, text; the time is cut off. What has no CR LF yet
    // waits for the next call.
    std::vector<std::string> Take();

private:
    const std::filesystem::path folder_;
    size_t taken_ = 0; // bytes of the text
};
