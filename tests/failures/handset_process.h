// The simulated handset in a process of its own, which meets none of the host's failures and outlasts the hosts.
#pragma once

#include <filesystem>
#include <string>

#include <sys/types.h>

class HandsetProcess
{
public:
    explicit HandsetProcess(const std::filesystem::path& devices);
    ~HandsetProcess();
    HandsetProcess(const HandsetProcess&) = delete;
    HandsetProcess& operator=(const HandsetProcess&) = delete;

    // "plug usb" or "plug serial"; "unplug"; "reset" (memory and faults as at first, unplugged);
    // "changes" (to be reported to the host); or a fault as phnsim knows it. Returns when it is done.
    void Tell(const std::string& command) const;

private:
    int socket_ = -1;
    pid_t process_ = 0;
};
