// The log of this process, in surroundings of its own with the registry file that switches it. One at a time.
#pragma once

#include "log/log_file.h"
#include "log/log_reader.h"
#include "support/surroundings.h"

class LogCapture
{
public:
    // The registry's "Logging Level"; none: the value is missing.
    explicit LogCapture(std::optional<DWORD> level)
    {
        std::filesystem::current_path(Folder()); // where the log lies when the library is not loaded as one
        SetLevel(level);
        CreateLogLock();
    }
    ~LogCapture()
    {
        CloseLog();
        DestroyLogLock();
        std::filesystem::current_path("/");
    }

    void SetLevel(std::optional<DWORD> level, const std::string& more = {}) { surroundings_.SetLogging(level, more); }
    // The registry file then holds no key.
    void RemoveKey() { surroundings_.ReplaceRegistry("REGEDIT4\n"); }
    const std::filesystem::path& Folder() const { return surroundings_.root; }
    const std::filesystem::path& Devices() const { return surroundings_.devices; }

    Lines Files() const { return reader_.Files(); }
    std::string Text() const { return reader_.Text(); }
    Lines TakeLines() { return reader_.Take(); }

private:
    const Surroundings surroundings_;
    LogReader reader_{Folder()};
};
