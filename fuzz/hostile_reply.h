// A reply as an input describes it: a byte for its form and how reads and the write go on, then what the form needs.
// Well-formed frames are the easiest to say, so that what is in them gets beyond the frame.
#pragma once

#include "fuzz/input.h"
#include "fuzz/memory_port.h"

namespace fuzz {

struct Reply
{
    Outcome writing = Outcome::Now;
    std::vector<Piece> pieces{};
};

// The forms, in the low three bits of the first byte. The others: three bits for the reads (4 and above: Later,
// TimeOut, Failure, LateFailure), two for the write (2 Later; 3 as the next byte says).
enum class Form : std::uint8_t
{
    Framed,    // a field, in a frame
    FramedCut, // the same, cut: a byte has two bits for how often, and three for how the last read ends if otherwise
    Twisted,   // a position, a byte to change there, and a field: a frame with a header that is not as it should be
    Raw,       // a field without a frame
    RawCut,
    Silence,
    Lengthened, // a byte, and a field, which is followed by so many times 64 zeros: a frame
};

Reply HostileReply(Input& input, bool isFramed);

// Cuts bytes into several reads; a word for each cut says where.
std::vector<Piece> CutInPieces(Input& input, unsigned cuts, std::span<const std::uint8_t> bytes, Outcome outcome);

} // namespace fuzz
