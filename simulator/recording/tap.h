// What goes over a line to a host, seen as it passes: bytes with their time and direction. A tap changes nothing.
// Used for recordings and captures; a PacketAssembler makes packets of it.
#pragma once

#include "simulator/handset/frame.h"
#include "simulator/handset/utc_time.h"
#include "simulator/lines/line.h"

#include <functional>

namespace simulator {

enum class Sender
{
    Host,
    Handset,
};

struct Chunk
{
    Moment time;
    Sender sender = Sender::Host;
    Bytes bytes{}; // as they came or went in one piece; empty: the sender has closed its end
};

using Tap = std::function<void(const Chunk&)>;

// The opener's lines, with `tap` told of every chunk: what the host sends once it is read, what the handset sends
// before it is written. Calls come one at a time, from the threads that read and write.
LineOpener Tapped(LineOpener opener, Tap tap);

} // namespace simulator
