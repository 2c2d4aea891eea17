// \\.\pipe\phnsim: control lines of one client after the other.
#pragma once

#include "report.h"
#include "simulator/lines/pipe_line_windows.h"
#include "simulator/lines/worker.h"
#include "simulator/script/loop.h"

namespace simulated {

class ControlPipe
{
public:
    // Throws std::system_error when another process has the pipe.
    ControlPipe(simulator::Loop& loop, Report& report);
    ~ControlPipe();
    ControlPipe(const ControlPipe&) = delete;
    ControlPipe& operator=(const ControlPipe&) = delete;

private:
    void Listen();

    simulator::Loop& loop_;
    Report& report_;
    simulator::PipeLine pipe_;
    simulator::Worker listening_{[this] { Listen(); }};
};

} // namespace simulated
