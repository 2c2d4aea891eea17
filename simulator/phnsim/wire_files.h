// What goes over the line, written into the files that were asked for: a recording, a capture.
#pragma once

#include "simulator/phnsim/options.h"
#include "simulator/recording/pcapng.h"
#include "simulator/recording/recording.h"

#include <optional>

namespace simulator {

class WireFiles
{
public:
    explicit WireFiles(const Options& options); // throws std::runtime_error when a file cannot be made

    // The lines that write; those given when there is nothing to write. They must not outlast this object.
    LineOpener Tap(LineOpener lines);
    void Check() const; // throws std::runtime_error when something could not be written

private:
    std::optional<RecordingWriter> recording_;
    std::optional<PcapngWriter> capture_;
    PacketAssembler packets_;
};

} // namespace simulator
