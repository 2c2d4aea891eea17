// A simulated handset at work: it offers a line, usually a pseudo terminal in a device directory under the name that a
// real handset would have, and serves whoever opens it. Used by tests, by phnctl and by phnsim. It serves on a thread
// of its own, and everything here may be called from any other thread. The handset's watcher, on the serving thread,
// may call Unplug, Replug and HangUp: there they do not wait, and take effect once the reply is sent.
#pragma once

#include "simulator/handset/conversation.h"
#include "simulator/handset/handset.h"
#include "simulator/handset/session.h"
#include "simulator/lines/line.h"
#include "simulator/lines/worker.h"

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace simulator {

// The names under which a handset appears in a device directory.
std::string UsbInterfaceName(const std::string& instance);   // usb#vid_fffe&pid_0001#INSTANCE#{diagnostic class}
std::string ModemInterfaceName(const std::string& instance); // the same with the modem class

// Makes who answers on a line that has just been opened, and is gone before the line is.
using ConversationMaker = std::function<std::unique_ptr<Conversation>(Handset& handset, Line& line)>;

// The simulated handset's sessions.
ConversationMaker SessionsOf(PortKind kind);

class Simulator
{
public:
    Simulator(LineOpener opener, ConversationMaker maker, Phone phone = DefaultPhone());
    Simulator(LineOpener opener, PortKind kind, Phone phone = DefaultPhone())
        : Simulator(std::move(opener), SessionsOf(kind), std::move(phone))
    {
    }
    // On a pseudo terminal; `name` is the entry's name in the directory: "com5", UsbInterfaceName("0001") or
    // ModemInterfaceName("0001"). A link that a killed simulator left is replaced.
    Simulator(std::filesystem::path devices, std::string name, PortKind kind = PortKind::Diagnostic,
              Phone phone = DefaultPhone())
        : Simulator(PtyLines(std::move(devices), std::move(name)), kind, std::move(phone))
    {
    }
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // Memory, faults and counters.
    Handset& Control() { return handset_; }

    // Calls `told`, on the serving thread, when a line that ended cannot be offered again, and nobody waits to be told
    // so: the handset is unplugged. Before Start().
    void WhenLost(std::function<void(const std::string& why)> told) { lost_ = std::move(told); }

    // Each returns when the entry is there, or gone. Start and Replug throw std::system_error when the line cannot be
    // offered (no such directory, another simulator serves under this name).
    void Start() { Want(Wanted::Plugged); }
    void Unplug() { Want(Wanted::Unplugged); }
    void Replug() { Want(Wanted::Plugged); }
    // For good: the simulator cannot be started again.
    void Stop();
    // Drops the line and offers it again: an open host sees its port fail, the next open works. Nothing while
    // unplugged.
    void HangUp();

    bool IsPlugged() const;

private:
    enum class Wanted
    {
        Plugged,
        Unplugged,
        Stopped,
    };

    enum class Presence
    {
        Gone,
        Changing, // being opened or taken down
        There,
    };

    struct Offer
    {
        std::unique_ptr<Line> line{};
        std::unique_ptr<Conversation> conversation{};
    };

    void Want(Wanted wanted);
    void Await(std::unique_lock<std::mutex>& lock, const std::function<bool()>& isDone);
    void Serve();
    Offer Open();
    void ServeLine(const Offer& offer);
    bool Perform(const Step& step, Line& line);

    const LineOpener opener_;
    const ConversationMaker maker_;
    std::function<void(const std::string& why)> lost_ = [](const std::string&) {};
    Handset handset_;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    Wanted wanted_ = Wanted::Unplugged;
    Presence presence_ = Presence::Gone;
    std::uint64_t opened_ = 0;
    Line* line_ = nullptr;
    unsigned waiting_ = 0; // for what they wanted
    std::exception_ptr failure_;
    Worker worker_;
};

} // namespace simulator
