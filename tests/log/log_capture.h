// The log of this process, in a folder of its own with the registry file that switches it. One at a time.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

#include "log/log_reader.h"
#include "temporary_folder.h"

class LogCapture
{
public:
    // The registry's "Logging Level"; none: the value is missing.
    explicit LogCapture(std::optional<DWORD> level);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    // The same, and other keys and values as the registry file holds them.
    void SetLevel(std::optional<DWORD> level, const std::string& keys = {});
    // The registry file then holds no key.
    void RemoveKey();
    const std::filesystem::path& Folder() const { return folder_.Path(); }

    // As LogReader has them.
    Lines Files() const { return reader_.Files(); }
    std::string Text() const { return reader_.Text(); }
    Lines TakeLines() { return reader_.Take(); }

private:
    void WriteRegistry(const std::string& keys);

    const TemporaryFolder folder_;
    LogReader reader_{folder_.Path()};
};
