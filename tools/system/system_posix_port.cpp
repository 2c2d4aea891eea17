#include "system/system.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <pwd.h>
#include <sstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace host {

namespace fs = std::filesystem;

namespace {

std::string NameOf(long process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

std::string Identifier(const struct stat& node)
{
    std::ostringstream text;
    text << std::hex;
    for (const unsigned number : {major(node.st_dev), minor(node.st_dev)}) {
        text.width(2);
        text.fill('0');
        text << number << ':';
    }
    text << std::dec << node.st_ino;
    return text.str();
}

// The processes that hold a lock on the file. A line reads "3: FLOCK  ADVISORY  WRITE 812 00:16:5 0 EOF".
std::vector<Process> LockHolders(const struct stat& node)
{
    std::vector<Process> holders;
    const std::string wanted = Identifier(node);
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) {
        std::istringstream words(line);
        std::string number, kind, mode, access, identifier;
        long process = 0;
        if (words >> number >> kind >> mode >> access >> process >> identifier && kind == "FLOCK" &&
            identifier == wanted && process != getpid())
            holders.push_back({process, NameOf(process)});
    }
    return holders;
}

bool HasOpen(const fs::path& process, const struct stat& node)
{
    std::error_code error;
    for (const auto& descriptor : fs::directory_iterator(process / "fd", error)) {
        struct stat other
        {
        };
        if (stat(descriptor.path().c_str(), &other) == 0 && S_ISCHR(other.st_mode) && other.st_rdev == node.st_rdev)
            return true;
    }
    return false;
}

// The processes that have the terminal open, as far as this user may see them.
std::vector<Process> Openers(const struct stat& node)
{
    std::vector<Process> openers;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename().string();
        if (!std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; }))
            continue;
        const long process = std::stol(name);
        if (process != getpid() && HasOpen(entry.path(), node))
            openers.push_back({process, NameOf(process)});
    }
    return openers;
}

// The other end of a pseudo terminal is a program's, which keeps this end open too: that is the handset, not a rival.
bool IsPseudoTerminal(const std::string& target)
{
    return target.starts_with("/dev/pts/");
}

std::string EndCommand(const std::vector<Process>& holders)
{
    std::string command = geteuid() == 0 ? "kill" : "sudo kill";
    for (const Process& holder : holders)
        command += " " + std::to_string(holder.id);
    return command;
}

bool IsGroupOfProcess(gid_t group)
{
    return getegid() == group || group_member(group);
}

// By the group database, which counts from the next login on.
bool IsGroupOfUser(gid_t group)
{
    const passwd* user = getpwuid(getuid());
    if (!user)
        return false;
    int count = 0;
    getgrouplist(user->pw_name, user->pw_gid, nullptr, &count);
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    getgrouplist(user->pw_name, user->pw_gid, groups.data(), &count);
    return std::find(groups.begin(), groups.end(), group) != groups.end();
}

PortReport Forbidden(PortReport report, const struct stat& node)
{
    constexpr mode_t kGroupMay = S_IRGRP | S_IWGRP;
    report.state = PortState::NoPermission;
    const group* owner = getgrgid(node.st_gid);
    if (!owner || owner->gr_gid == 0 || (node.st_mode & kGroupMay) != kGroupMay || IsGroupOfProcess(owner->gr_gid)) {
        report.reason = "this user may not read and write it";
        report.remedy = "sudo chown \"$USER\" '" + report.target + "'";
        return report;
    }
    const std::string name = owner->gr_name;
    if (IsGroupOfUser(owner->gr_gid)) {
        report.reason = "the group " + name + " may use it, which this user belongs to from the next login on";
        report.remedy = "log out and in again, or for this shell: newgrp " + name;
    } else {
        report.reason = "the group " + name + " may use it, which this user does not belong to";
        report.remedy = "sudo usermod -aG " + name + " \"$USER\"   (then log in again)";
    }
    return report;
}

PortReport Unusable(PortReport report, const std::string& reason, const std::string& remedy)
{
    report.state = PortState::Unusable;
    report.reason = reason;
    report.remedy = remedy;
    return report;
}

struct FolderLock
{
    explicit FolderLock(int opened) : descriptor(opened) {}
    ~FolderLock() { close(descriptor); }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    const int descriptor;
};

} // namespace

std::shared_ptr<void> LockPortFolder(const fs::path& folder)
{
    const auto lock = std::make_shared<FolderLock>(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const bool isTaken = flock(lock->descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    return isTaken ? nullptr : lock;
}

std::vector<Process> PortFolderHolders(const fs::path& folder)
{
    struct stat node
    {
    };
    return stat(folder.c_str(), &node) == 0 ? LockHolders(node) : std::vector<Process>();
}

PortReport ExaminePort(const std::string& path)
{
    PortReport report;
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    report.target = error ? fs::read_symlink(path, error).string() : target.string();
    const bool mayRemove = access(fs::path(path).parent_path().c_str(), W_OK | X_OK) == 0;
    const std::string removal = (mayRemove ? "rm '" : "sudo rm '") + path + "'";
    struct stat node
    {
    };
    if (stat(path.c_str(), &node) != 0)
        return Unusable(report, std::strerror(errno), removal);
    if (!S_ISCHR(node.st_mode))
        return Unusable(report, "is no terminal", removal);
    if (access(path.c_str(), R_OK | W_OK) != 0)
        return Forbidden(report, node);
    report.holders = LockHolders(node);
    if (report.holders.empty() && !IsPseudoTerminal(report.target))
        report.holders = Openers(node);
    if (!report.holders.empty()) {
        report.state = PortState::Busy;
        report.reason = "another program uses it";
        report.remedy = EndCommand(report.holders);
    }
    return report;
}

} // namespace host
