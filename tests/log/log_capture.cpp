#include "log/log_capture.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "log/log_file.h"

namespace fs = std::filesystem;

LogCapture::LogCapture(std::optional<DWORD> level)
{
    std::string name = (fs::temp_directory_path() / "phnnrv-log-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error(name);
    folder_ = name;
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

void LogCapture::SetLevel(std::optional<DWORD> level)
{
    std::ostringstream text;
    text << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n";
    if (level)
        text << "\"Logging Level\"=dword:" << std::hex << *level << "\n";
    const fs::path fresh = folder_ / "fresh.reg";
    std::ofstream(fresh) << text.str();
    fs::rename(fresh, folder_ / "phnnrv.reg");
}

std::vector<std::string> LogCapture::Files() const
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
        if (entry.path().extension() == ".log")
            names.push_back(entry.path().filename());
    }
    std::ranges::sort(names);
    return names;
}

std::string LogCapture::Text() const
{
    std::string text;
    for (const std::string& name : Files()) {
        std::ifstream file(folder_ / name, std::ios::binary);
        text.append(std::istreambuf_iterator<char>(file), {});
    }
    return text;
}

std::vector<std::string> LogCapture::TakeLines()
{
    const std::string text = Text();
    std::istringstream fresh(text.substr(taken_));
    taken_ = text.size();
    std::vector<std::string> lines;
    for (std::string time, category, level, line; std::getline(fresh, time, '\t');) {
        std::getline(fresh, category, '\t');
        std::getline(fresh, level, '\t');
        std::getline(fresh, line, '\r');
        fresh.ignore();
        lines.push_back(category + " " + level + " " + line);
    }
    return lines;
}
