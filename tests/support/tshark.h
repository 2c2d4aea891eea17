// tshark, for tests that let it read what the system writes. A test without it is skipped.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

inline bool IsTsharkInstalled()
{
    return std::system("command -v tshark >/dev/null") == 0;
}

// The lines that it prints of the file; fails the test if it fails.
inline std::vector<std::string> Tshark(const std::string& file, const std::string& options)
{
    const std::string command = "tshark -r " + file + " " + options + " 2>/dev/null";
    std::FILE* const pipe = popen(command.c_str(), "r");
    std::string text;
    for (char buffer[4096]; const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe);)
        text.append(buffer, count);
    EXPECT_EQ(pclose(pipe), 0) << command;
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}
