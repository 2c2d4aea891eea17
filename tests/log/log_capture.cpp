#include "log/log_capture.h"

#include "log/log_file.h"

LogCapture::LogCapture(std::optional<DWORD> level)
{
    std::filesystem::current_path(Folder()); // where the log lies when the library is not loaded as one
    SetLevel(level);
    CreateLogLock();
}

LogCapture::~LogCapture()
{
    CloseLog();
    DestroyLogLock();
    std::filesystem::current_path("/");
}
