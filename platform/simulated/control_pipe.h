// \\.\pipe\phnsim: control lines of one client after the other, and what each is told.
#pragma once

#include "outbox.h"
#include "simulator/lines/pipe_line_windows.h"
#include "simulator/lines/worker.h"
#include "simulator/script/line_splitter.h"
#include "simulator/script/loop.h"

#include <string_view>

namespace simulated {

class ControlPipe : private simulator::PipeLine
{
public:
    // Throws std::system_error when another process has the pipe.
    explicit ControlPipe(simulator::Loop& loop);
    ~ControlPipe() override;
    ControlPipe(const ControlPipe&) = delete;
    ControlPipe& operator=(const ControlPipe&) = delete;

    // Tells the client, if there is one. On any thread; waits for nobody.
    void Say(std::string_view line) { outbox_.Add(line); }

private:
    void Listen();
    void WriteAll();
    void ClientHasGone() override;

    simulator::Loop& loop_;
    simulator::LineSplitter lines_{[this](std::string line) { loop_.Take(std::move(line)); }};
    Outbox outbox_;
    simulator::Worker writing_{[this] { WriteAll(); }};
    simulator::Worker listening_{[this] { Listen(); }};
};

} // namespace simulated
