// What one side has sent as a whole: a frame with its closing flag on a diagnostic port; on a modem port, which has no
// frames, all that came before the other side answered. Made of a tap's chunks; recorded, captured, dissected.
#pragma once

#include "simulator/handset/session.h"
#include "simulator/recording/tap.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <utility>

namespace simulator {

struct Packet
{
    Moment time;                       // of its first byte
    std::chrono::milliseconds took{0}; // to its last one
    Sender sender = Sender::Host;
    Bytes bytes{}; // as they went over the line; empty: the sender has closed its end
};

using PacketSink = std::function<void(const Packet&)>;

// A frame that is not finished when the other side begins to send, or either closes, is a packet as well, without a
// flag. Any thread may call it.
class PacketAssembler
{
public:
    PacketAssembler(PortKind kind, PacketSink sink) : kind_(kind), sink_(std::move(sink)) {}

    void Take(const Chunk& chunk);
    void Finish(); // what is not finished

private:
    void Append(const Chunk& chunk);
    void Emit();

    std::mutex mutex_;
    const PortKind kind_;
    const PacketSink sink_;
    Packet open_{};
};

} // namespace simulator
