// What this process holds of the system, to be compared with what it held before.
#pragma once

#include <malloc.h>

#include <cstddef>
#include <filesystem>
#include <iterator>

inline std::size_t CountEntries(const char* folder)
{
    namespace fs = std::filesystem;
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

struct Usage
{
    std::size_t threads = CountEntries("/proc/self/task");
    std::size_t descriptors = CountEntries("/proc/self/fd");
    std::size_t memory = mallinfo2().uordblks;
};
