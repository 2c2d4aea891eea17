#include "failures/handset_process.h"

#include <csignal>
#include <stdexcept>
#include <system_error>

#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "simulator/lines/simulator.h"

namespace {

constexpr uint16_t kAllChanges = 0x01FF;

class Handsets
{
public:
    explicit Handsets(const std::filesystem::path& devices)
        : usb_(devices, simulator::UsbInterfaceName("0001")), serial_(devices, "com5")
    {
    }

    void Obey(const std::string& command)
    {
        if (command.starts_with("plug"))
            (plugged_ = command == "plug usb" ? &usb_ : &serial_)->Start();
        else if (command == "unplug")
            plugged_->Unplug();
        else if (command == "reset")
            Reset();
        else if (command == "changes")
            plugged_->Control().Change(0, [](simulator::Phone& phone) { phone.variance = kAllChanges; });
        else
            plugged_->Control().AddFault(command);
    }

private:
    void Reset()
    {
        plugged_->Unplug();
        plugged_->Control().ClearFaults();
        plugged_->Control().Change(0, [](simulator::Phone& phone) { phone = simulator::DefaultPhone(); });
    }

    simulator::Simulator usb_;
    simulator::Simulator serial_;
    simulator::Simulator* plugged_ = &usb_;
};

[[noreturn]] void Serve(int socket, const std::filesystem::path& devices)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Handsets handsets(devices);
    char command[200];
    for (ssize_t length; (length = recv(socket, command, sizeof command, 0)) > 0;) {
        handsets.Obey(std::string(command, static_cast<size_t>(length)));
        if (send(socket, "", 1, 0) != 1)
            break;
    }
    handsets.Obey("unplug");
    _exit(0);
}

} // namespace

HandsetProcess::HandsetProcess(const std::filesystem::path& devices)
{
    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) || (process_ = fork()) < 0)
        throw std::system_error(errno, std::generic_category());
    if (process_ == 0) {
        close(sockets[0]);
        Serve(sockets[1], devices);
    }
    close(sockets[1]);
    socket_ = sockets[0];
}

HandsetProcess::~HandsetProcess()
{
    close(socket_);
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

void HandsetProcess::Tell(const std::string& command) const
{
    char done;
    if (send(socket_, command.data(), command.size(), 0) < 0 || recv(socket_, &done, 1, 0) != 1)
        throw std::runtime_error("the handset's process does not answer to: " + command);
}
