// What a file holds, for tests that look at what programs write.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

inline std::string ReadAll(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
