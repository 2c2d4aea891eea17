// Files that only their owner reads, and that are whole or not there: what the tools write for the user goes through
// these. No link is followed to a file that is written. One implementation per system, chosen by CMake.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>

namespace host {

// Makes the folder, and those above it that are missing. Throws std::system_error.
void MakePrivateFolder(const std::filesystem::path& folder);

// Writes the text beside the path, flushes it to the disk and gives it its name. When it throws std::system_error,
// there is what was there before.
void WriteWhole(const std::filesystem::path& path, std::string_view text);

// A file to whose end is written. What has been appended is on the disk, also if the machine stops.
class GrowingFile
{
public:
    // Makes the file if it is not there. Throws std::system_error, as does Append.
    explicit GrowingFile(const std::filesystem::path& path);
    ~GrowingFile();
    GrowingFile(const GrowingFile&) = delete;
    GrowingFile& operator=(const GrowingFile&) = delete;

    void Append(std::string_view text);

    // Takes that much room on the disk for what is going to be appended, where the file system can. Throws
    // std::system_error when there is not that much.
    void Reserve(std::uint64_t size);

private:
    struct Handle;
    std::unique_ptr<Handle> m_handle;
};

} // namespace host
