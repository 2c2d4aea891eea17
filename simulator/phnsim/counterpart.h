// Who answers the host on phnsim's port, as the options choose: the simulated handset, another one, or a recording.
#pragma once

#include "simulator/phnsim/options.h"
#include "simulator/recording/replay.h"
#include "simulator/script/control.h"

#include <optional>
#include <string>

namespace simulator {

class Counterpart
{
public:
    // Throws std::invalid_argument when a recording is of another kind of port.
    explicit Counterpart(const Options& options);

    ConversationMaker Conversations();
    // What goes wrong, and the other handset's end, are told there. Before the simulator starts.
    void ReportTo(Control& control) { control_ = &control; }

    std::string Name(Simulator& simulator) const;
    // After how many closings --once ends.
    unsigned Closings() const;
    // Reports what the host has left out of a recording.
    void ReportMissing();

private:
    void Report(const Deviation& deviation);

    const Options& options_;
    std::optional<Replay> replay_;
    Control* control_ = nullptr;
};

} // namespace simulator
