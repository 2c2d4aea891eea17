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

void Obey(simulator::Simulator& simulator, const std::string& command)
{
    if (command == "plug") {
        simulator.Start();
    } else if (command == "unplug") {
        simulator.Unplug();
    } else if (command == "reset") {
        simulator.Unplug();
        simulator.Control().ClearFaults();
        simulator.Control().Change(0, [](simulator::Phone& phone) { phone = simulator::DefaultPhone(); });
    } else if (command == "changes") {
        simulator.Control().Change(0, [](simulator::Phone& phone) { phone.variance = kAllChanges; });
    } else {
        simulator.Control().AddFault(command.substr(command.find(' ') + 1));
    }
}

[[noreturn]] void Serve(int socket, const std::filesystem::path& devices)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    simulator::Simulator simulator(devices, simulator::UsbInterfaceName("0001"));
    char command[200];
    for (ssize_t length; (length = recv(socket, command, sizeof command, 0)) > 0;) {
        Obey(simulator, std::string(command, static_cast<size_t>(length)));
        if (send(socket, "", 1, 0) != 1)
            break;
    }
    simulator.Stop();
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
