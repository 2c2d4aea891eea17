// What a library or a test process writes to the log files in a folder.
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

using Lines = std::vector<std::string>;

class LogReader
{
public:
    explicit LogReader(std::filesystem::path folder) : folder_(std::move(folder)) {}

    // The files' names, and what they hold.
    Lines Files() const;
    std::string Text() const;

    // The lines since the last call, without time: "CPort Error text". What has no CR LF yet waits for the next call.
    Lines Take();

private:
    const std::filesystem::path folder_;
    size_t taken_ = 0; // bytes of the text
};
