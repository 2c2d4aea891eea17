#include "port.h"

#include "device_interface.h"
#include "simulator/lines/pipe_line_windows.h"

#include <windows.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace simulated {
namespace {

// A name that no other process's port has, nor an earlier one of this process.
std::string NewPipeName()
{
    static std::atomic<unsigned> count{0};
    return R"(\\.\pipe\phnsim-port-)" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(GetTickCount64()) +
           "-" + std::to_string(++count);
}

} // namespace

// A pipe hands over each write by itself, a serial port what has come until it was silent for a while: so what is
// written is kept for that long.
class Port::Line : public simulator::PipeLine
{
public:
    Line(Port& port, const std::string& name) : PipeLine(name), port_(port) { port_.SetPipeName(name); }
    ~Line() override
    {
        port_.SetPipeName({});
        Announce(false);
    }

    std::size_t Read(std::span<std::uint8_t> buffer) override
    {
        if (!WaitFor(port_.offered_.Get()) || (!kept_.empty() && !Pause(port_.interval_)))
            return 0;
        return PipeLine::Read(buffer);
    }

    bool Write(std::span<const std::uint8_t> bytes) override
    {
        kept_.insert(kept_.end(), bytes.begin(), bytes.end());
        return true;
    }

    bool Pause(std::chrono::milliseconds time) override
    {
        const std::chrono::milliseconds interval = port_.interval_;
        if (!kept_.empty() && time >= interval) {
            if (!PauseUnless(port_.awaited_.Get(), interval) || !PipeLine::Write(std::exchange(kept_, {})))
                return false;
            time -= interval;
        }
        return PauseUnless(port_.awaited_.Get(), time);
    }

private:
    Port& port_;
    std::vector<std::uint8_t> kept_;
};

Port::Port() : first_(std::make_unique<Line>(*this, NewPipeName())) {}

Port::~Port() = default;

simulator::LineOpener Port::Lines()
{
    return [this]() -> std::unique_ptr<simulator::Line> {
        if (first_)
            return std::move(first_);
        auto line = std::make_unique<Line>(*this, NewPipeName());
        Announce(true);
        return line;
    };
}

void Port::Offer()
{
    SetEvent(offered_.Get());
}

void Port::SetIsAwaited(bool isAwaited)
{
    isAwaited ? SetEvent(awaited_.Get()) : ResetEvent(awaited_.Get());
}

void Port::Withdraw()
{
    first_.reset();
}

std::string Port::PipeName() const
{
    const std::scoped_lock lock(mutex_);
    return pipeName_;
}

void Port::SetPipeName(std::string name)
{
    const std::scoped_lock lock(mutex_);
    pipeName_ = std::move(name);
}

} // namespace simulated
