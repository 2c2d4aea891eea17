#include "log/log_capture.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "log/log_file.h"

namespace fs = std::filesystem;

namespace {

fs::path MakeFolder()
{
    std::string name = (fs::temp_directory_path() / "phnnrv-log-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error(name);
    return name;
}

} // namespace

LogCapture::LogCapture(std::optional<DWORD> level) : folder_(MakeFolder()), reader_(folder_)
{
    fs::current_path(folder_); // where the log lies when the library is not loaded as one
    SetLevel(level);
    setenv("PHNNRV_REGISTRY", (folder_ / "phnnrv.reg").c_str(), 1);
    CreateLogLock();
}

LogCapture::~LogCapture()
{
    CloseLog();
    DestroyLogLock();
    fs::current_path("/");
    std::error_code ignored; // a folder that stays behind is no failure of the test
    fs::remove_all(folder_, ignored);
}

void LogCapture::SetLevel(std::optional<DWORD> level, const std::string& keys)
{
    std::ostringstream text;
    text << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n";
    if (level)
        text << "\"Logging Level\"=dword:" << std::hex << *level << "\n";
    text << "\n" << keys;
    const fs::path fresh = folder_ / "fresh.reg";
    std::ofstream(fresh) << text.str();
    fs::rename(fresh, folder_ / "phnnrv.reg");
}

std::vector<std::string> LogCapture::TakeLines()
{
    std::vector<std::string> lines = reader_.Take();
    for (std::string& line : lines) {
        for (int tab = 0; tab < 2; ++tab)
            line[line.find('\t')] = ' ';
    }
    return lines;
}
