// The simulated handset of this process, with its script, its control pipe and those who work on them.
#pragma once

#include "control_pipe.h"
#include "port.h"
#include "report.h"
#include "simulator/lines/worker.h"
#include "simulator/script/loop.h"

#include <optional>
#include <string>
#include <string_view>

namespace simulated {

class HandsetInProcess
{
public:
    // Begin: the first call, on the thread that loads the library, makes it. Nobody works on it before the library is
    // loaded, but its port can be opened. Null when it could not be made.
    static HandsetInProcess* Begin();
    static HandsetInProcess* Get();
    // Returns when nobody works on it any more.
    static void End();

    simulated::Port& Port() { return port_; }
    const simulated::Port& Port() const { return port_; }

private:
    HandsetInProcess();
    ~HandsetInProcess();

    void ReadScript();
    void Work();
    void Serve();
    void Print(std::string_view line);
    void TellVerdict();
    void Tell(const std::string& wrong);

    simulated::Port port_;
    Report report_;
    simulator::Wakeup wakeup_;
    simulator::History history_{wakeup_};
    simulator::Simulator simulator_;
    simulator::Control control_;
    simulator::Loop loop_;
    bool hasScript_ = false;
    std::optional<ControlPipe> pipe_;
    std::optional<simulator::Worker> working_;
};

} // namespace simulated
