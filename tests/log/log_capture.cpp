#include "log/log_capture.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "log/log_file.h"

namespace fs = std::filesystem;

LogCapture::LogCapture(std::optional<DWORD> level)
{
    fs::current_path(Folder()); // where the log lies when the library is not loaded as one
    SetLevel(level);
    setenv("PHNNRV_REGISTRY", (Folder() / "phnnrv.reg").c_str(), 1);
    CreateLogLock();
}

LogCapture::~LogCapture()
{
    CloseLog();
    DestroyLogLock();
    fs::current_path("/");
}

void LogCapture::SetLevel(std::optional<DWORD> level, const std::string& keys)
{
    std::ostringstream text;
    text << "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n";
    if (level)
        text << "\"Logging Level\"=dword:" << std::hex << *level << "\n";
    text << "\n" << keys;
    WriteRegistry(text.str());
}

void LogCapture::RemoveKey()
{
    WriteRegistry({});
}

void LogCapture::WriteRegistry(const std::string& keys)
{
    const fs::path fresh = Folder() / "fresh.reg";
    std::ofstream(fresh) << "REGEDIT4\n\n" << keys;
    fs::rename(fresh, Folder() / "phnnrv.reg");
}
