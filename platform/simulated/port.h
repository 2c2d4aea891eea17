// The simulated handset's port: there or not, and which named pipe leads to it while it is.
#pragma once

#include "simulator/lines/handle_line_windows.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>

namespace simulated {

class Port
{
public:
    // There at once, before anybody serves it: what is written until then waits. Throws std::system_error.
    Port();
    ~Port();
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    // What the handset serves. Each line after the first is announced as it comes, each as it goes. Nothing is read
    // before Offer().
    simulator::LineOpener Lines();
    void Offer();
    // The first line goes unserved.
    void Withdraw();

    // Of the pipe; empty while the port is not there.
    std::string PipeName() const;

    // While the host waits to open again what it has closed, the handset, which may not have noticed, pauses for
    // nobody.
    void SetIsAwaited(bool isAwaited);

    // After so much silence a reader has what was written to it, as a serial port's interval time-out says.
    void SetReadInterval(std::chrono::milliseconds interval) { interval_ = interval; }

private:
    class Line;

    void SetPipeName(std::string name);

    mutable std::mutex mutex_;
    std::string pipeName_;
    std::atomic<std::chrono::milliseconds> interval_{std::chrono::milliseconds(10)};
    const simulator::Handle offered_{simulator::MakeEvent()};
    const simulator::Handle awaited_{simulator::MakeEvent()};
    std::unique_ptr<Line> first_;
};

} // namespace simulated
