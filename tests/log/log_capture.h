// The log of this process in a folder of its own, with the registry file that switches it. One at a time: it stands for
// the load and the unload of the library's log.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

class LogCapture
{
public:
    // The registry's "Logging Level"; none: the value is missing.
    explicit LogCapture(std::optional<DWORD> level);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    void SetLevel(std::optional<DWORD> level);
    const std::filesystem::path& Folder() const { return folder_; }

    // The log files' names, and what they hold.
    std::vector<std::string> Files() const;
    std::string Text() const;

    // The lines since the last call, without time: "CPort Error text".
    std::vector<std::string> TakeLines();

private:
    std::filesystem::path folder_;
    size_t taken_ = 0; // bytes of the text
};
