#include "phnctl/handset/linux_findings.h"
#include "phnctl/handset/surroundings.h"
#include "system/system.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <set>
#include <unistd.h>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr const char* kDiagnosticClass = "{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}";
constexpr const char* kModemClass = "{2c7089aa-2e0e-11d1-b114-00c04fc2aae4}";
constexpr const char* kUdevDirectory = "/dev/phnnrv"; // that the udev rule fills
constexpr const char* kHandsetTerminals[] = {"ttyUSB", "ttyACM", "rfcomm"};

fs::path DeviceDirectory()
{
    const char* named = std::getenv("PHNNRV_DEVICES");
    return named ? named : kUdevDirectory;
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
std::string HowToMake(const fs::path& directory)
{
    if (directory == kUdevDirectory)
        return "plug a handset in: the udev rule makes the directory for it";
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

std::vector<Finding> Unlisted(const fs::path& directory, const std::vector<PortEntry>& entries)
{
    std::set<fs::path> listed;
    std::error_code error;
    for (const PortEntry& entry : entries)
        listed.insert(fs::weakly_canonical(entry.path, error));
    std::vector<Finding> findings;
    for (const auto& terminal : fs::directory_iterator("/dev", error)) {
        const std::string path = terminal.path().string();
        if (!IsHandsetTerminal(terminal.path().filename().string()) || listed.contains(terminal.path()))
            continue;
        findings.push_back({"terminal", "note", path + " is not in the device directory " + directory.string(),
                            (IsWritable(directory) ? "ln -s " : "sudo ln -s ") + path + " " +
                                Quoted(directory / FreeName(directory))});
        const host::PortReport report = host::ExaminePort(path);
        if (report.state == host::PortState::NoPermission)
            findings.push_back({"terminal", "no permission", path + ": " + report.reason, report.remedy});
    }
    return findings;
}

} // namespace

Surroundings LookAround()
{
    const fs::path directory = DeviceDirectory();
    Surroundings found;
    found.place = "device directory " + directory.string();
    found.folder = directory;
    std::error_code error;
    fs::directory_iterator entry(directory, error);
    if (error) {
        found.problem = error.message();
        found.remedy = error == std::errc::no_such_file_or_directory ? HowToMake(directory)
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

// Another directory than udev's is not the rule's.
std::vector<Finding> LookAtSystem()
{
    std::vector<Finding> findings = FindRegistryProblem();
    if (DeviceDirectory() == kUdevDirectory)
        findings.push_back(FindRule("/", host::ExecutableDirectory().parent_path() / "lib/udev/rules.d"));
    std::ranges::copy(FindDriverless("/"), std::back_inserter(findings));
    return findings;
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
