#include "simulator/lines/descriptor_line.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <termios.h>
#include <unistd.h>

namespace simulator {
namespace {

[[noreturn]] void Fail(std::errc error, const std::string& what)
{
    throw std::system_error(std::make_error_code(error), what);
}

// Holds the name of an entry for this process: an abstract socket, which the system frees even when the process is
// killed. So a link that is left without its owner can be told from one that is served.
int ClaimEntry(const std::filesystem::path& link)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string hashed = "phnsim/" + std::to_string(std::hash<std::string>()(link.string()));
    std::memcpy(address.sun_path + 1, hashed.data(), hashed.size());
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + hashed.size());
    const int claim = Checked(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0), "socket");
    if (bind(claim, reinterpret_cast<const sockaddr*>(&address), size) == 0)
        return claim;
    const int error = errno;
    close(claim);
    throw std::system_error(error, std::generic_category(), link.string() + " is served by another simulator");
}

// What an entry that nobody claims may be: the link of a simulator that was killed. A real handset's link stays.
void RemoveStale(const std::filesystem::path& link)
{
    if (!std::filesystem::is_symlink(link))
        return;
    if (std::filesystem::read_symlink(link).parent_path() == "/dev/pts" || !std::filesystem::exists(link))
        std::filesystem::remove(link);
}

class PtyLine : public DescriptorLine
{
public:
    PtyLine(const std::filesystem::path& devices, const std::string& name)
    {
        if (!std::filesystem::is_directory(devices))
            Fail(std::errc::no_such_file_or_directory, "the device directory " + devices.string());
        const std::filesystem::path folder = std::filesystem::canonical(devices);
        claim_.Reset(ClaimEntry(folder / name));
        OpenTerminal();
        link_ = folder / name;
        RemoveStale(link_);
        std::filesystem::create_symlink(terminal_, link_);
    }

    ~PtyLine() override
    {
        std::error_code error;
        if (std::filesystem::read_symlink(link_, error) == terminal_)
            std::filesystem::remove(link_, error);
    }

private:
    // The terminal tells that nobody has it open any more, so nobody here may while a host has.
    void HostHasSent() override { held_.Reset(-1); }

    bool HostHasGone() override
    {
        held_.Reset(open(terminal_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
        return held_.Get() >= 0;
    }

    void OpenTerminal()
    {
        open_.Reset(Checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK), "posix_openpt"));
        Checked(grantpt(open_.Get()), "grantpt");
        Checked(unlockpt(open_.Get()), "unlockpt");
        std::array<char, 64> path{};
        if (ptsname_r(open_.Get(), path.data(), path.size()) != 0)
            Fail(std::errc::not_a_stream, "ptsname_r");
        terminal_ = path.data();
        held_.Reset(Checked(open(path.data(), O_RDWR | O_NOCTTY | O_CLOEXEC), terminal_.string()));
        termios settings{};
        Checked(tcgetattr(held_.Get(), &settings), "tcgetattr");
        cfmakeraw(&settings);
        Checked(tcsetattr(held_.Get(), TCSANOW, &settings), "tcsetattr");
    }

    Descriptor claim_;
    Descriptor held_; // the host's side, between two hosts: the line ends with none of them
    std::filesystem::path terminal_;
    std::filesystem::path link_;
};

} // namespace

LineOpener PtyLines(std::filesystem::path devices, std::string name)
{
    return [devices = std::move(devices), name = std::move(name)] { return std::make_unique<PtyLine>(devices, name); };
}

} // namespace simulator
