#include "phnctl/handset/surroundings.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <unistd.h>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr const char* kDiagnosticClass = "{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}";
constexpr const char* kModemClass = "{2c7089aa-2e0e-11d1-b114-00c04fc2aae4}";
constexpr const char* kHandsetTerminals[] = {"ttyUSB", "ttyACM", "rfcomm"};

fs::path DeviceDirectory()
{
    const char* named = std::getenv("PHNNRV_DEVICES");
    return named ? named : "/dev/phnnrv";
}

bool IsWritable(const fs::path& folder)
{
    return access(folder.c_str(), W_OK | X_OK) == 0;
}

std::string Quoted(const fs::path& path)
{
    return "'" + path.string() + "'";
}

// Without more rights than are needed.
std::string MakeCommand(const fs::path& directory)
{
    std::error_code error;
    fs::path nearest = fs::absolute(directory, error).lexically_normal();
    while (!fs::exists(nearest, error) && nearest.has_relative_path())
        nearest = nearest.parent_path();
    return (IsWritable(nearest) ? "mkdir -p " : "sudo install -d -o \"$USER\" ") + Quoted(directory);
}

std::string Kind(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    if (name.ends_with(kDiagnosticClass))
        return name.find("vid_fffe") == std::string::npos ? "foreign USB interface" : "USB interface";
    if (name.ends_with(kModemClass))
        return "modem interface";
    return name.ends_with('}') ? "foreign interface" : "serial port";
}

bool IsHandsetTerminal(const std::string& name)
{
    return std::any_of(std::begin(kHandsetTerminals), std::end(kHandsetTerminals),
                       [&](const char* beginning) { return name.starts_with(beginning); });
}

// The first of com1, com2, ... that is not taken.
std::string FreeName(const fs::path& directory)
{
    for (unsigned number = 1;; ++number) {
        const std::string name = "com" + std::to_string(number);
        std::error_code error;
        if (!fs::exists(fs::symlink_status(directory / name, error)))
            return name;
    }
}

std::vector<UnlistedTerminal> Unlisted(const fs::path& directory, const std::vector<PortEntry>& entries)
{
    std::set<fs::path> listed;
    std::error_code error;
    for (const PortEntry& entry : entries)
        listed.insert(fs::weakly_canonical(entry.path, error));
    std::vector<UnlistedTerminal> terminals;
    for (const auto& terminal : fs::directory_iterator("/dev", error))
        if (IsHandsetTerminal(terminal.path().filename().string()) && !listed.contains(terminal.path()))
            terminals.push_back({terminal.path().string(), (IsWritable(directory) ? "ln -s " : "sudo ln -s ") +
                                                               terminal.path().string() + " " +
                                                               Quoted(directory / FreeName(directory))});
    return terminals;
}

} // namespace

Surroundings LookAround()
{
    const fs::path directory = DeviceDirectory();
    Surroundings found;
    found.place = "device directory " + directory.string();
    std::error_code error;
    fs::directory_iterator entry(directory, error);
    if (error) {
        found.problem = error.message();
        found.remedy = error == std::errc::no_such_file_or_directory ? MakeCommand(directory)
                                                                     : "sudo chmod a+rx " + Quoted(directory);
        return found;
    }
    for (; entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        found.entries.push_back({name, entry->path().string(), Kind(name)});
    }
    std::sort(found.entries.begin(), found.entries.end(),
              [](const PortEntry& a, const PortEntry& b) { return a.name < b.name; });
    found.unlisted = Unlisted(directory, found.entries);
    return found;
}

std::string SimulatorCommand()
{
    const fs::path directory = DeviceDirectory();
    std::error_code error;
    if (fs::is_directory(directory, error) && IsWritable(directory))
        return "phnsim --port com5 --devices " + Quoted(directory);
    return "export PHNNRV_DEVICES=/tmp/handsets; mkdir -p $PHNNRV_DEVICES; phnsim --port com5   # here: the same "
           "export";
}

} // namespace phnctl
