#include "api/handset_fixture.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

std::vector<std::string> LogReader::Take()
{
    std::string text;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
        if (entry.path().extension() == ".log")
            text = (std::ostringstream() << std::ifstream(entry.path(), std::ios::binary).rdbuf()).str();
    }
    std::istringstream fresh(text.substr(taken_));
    taken_ = text.size();
    std::vector<std::string> lines;
    for (std::string line; std::getline(fresh, line);) {
        if (!line.ends_with('\r'))
            throw std::runtime_error("a log line ends without CR LF: " + line);
        line.pop_back();
        lines.push_back(line.substr(line.find('\t') + 1));
    }
    return lines;
}

HandsetTest::~HandsetTest()
{
    if (library_)
        FreeLibrary(library_);
}

void HandsetTest::Load()
{
    library_ = LoadLibraryA(bench_.LibraryPath().c_str());
    if (!library_)
        throw std::runtime_error("the library does not load: " + std::to_string(GetLastError()));
}

void HandsetTest::StartService()
{
    bench_.Plug();
    Load();
    if (const PHN_ERROR error = CALL(PHN_Startup)())
        throw std::runtime_error("PHN_Startup: " + std::to_string(error));
    bench_.TakeLog();
}

void* HandsetTest::FindAddress(const char* name) const
{
    void* const address = reinterpret_cast<void*>(GetProcAddress(library_, name));
    if (!address)
        throw std::runtime_error(std::string("not exported: ") + name);
    return address;
}
