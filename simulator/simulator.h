// A simulated handset on a pseudo terminal, published in a device directory under the name that a real one would have.
// Used by tests, by phnctl and by phnsim; it serves on a thread of its own, and everything here may be called from any
// thread. The link is removed when the handset is unplugged or the simulator ends; a link that a killed simulator left
// is replaced.
#pragma once

#include "simulator/handset.h"
#include "simulator/session.h"

#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace simulator {

class Line;

// The names under which a handset appears in a device directory.
std::string UsbInterfaceName(const std::string& instance);   // usb#vid_fffe&pid_0001#INSTANCE#{diagnostic class}
std::string ModemInterfaceName(const std::string& instance); // the same with the modem class

class Simulator
{
public:
    // `name` is the entry's name in the directory: "com5", UsbInterfaceName("0001") or ModemInterfaceName("0001").
    Simulator(std::filesystem::path devices, std::string name, PortKind kind = PortKind::Diagnostic,
              Phone phone = DefaultPhone());
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // Each returns when the link is there, or gone. Start and Replug throw std::system_error when the entry cannot be
    // published (no such directory, another simulator serves under this name).
    void Start();
    void Stop();
    void Unplug();
    void Replug();
    // Drops the line and offers it again: an open host sees its port fail, the next open works.
    void HangUp();

    bool IsPlugged() const;
    Handset& Control() { return handset_; }
    std::filesystem::path Link() const { return devices_ / name_; }

private:
    enum class Wanted
    {
        Plugged,
        Unplugged,
        Stopped,
    };

    void Want(Wanted wanted);
    void Serve();
    void ServeLine(std::unique_lock<std::mutex>& lock);
    bool Perform(const Step& step, Line& line);

    const std::filesystem::path devices_;
    const std::string name_;
    const PortKind kind_;
    Handset handset_;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    Wanted wanted_ = Wanted::Stopped;
    bool plugged_ = false;
    std::uint64_t lines_ = 0;
    Line* line_ = nullptr;
    std::exception_ptr failure_;
    std::thread thread_;
};

} // namespace simulator
