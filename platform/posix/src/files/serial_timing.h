// When a serial read or write is over by time: the documented meaning of COMMTIMEOUTS, but for the intervals of
// MAXDWORD, kept apart from the transfer. Made when the operation starts; told of every arrival of bytes; asked for the
// moment at which it ends.
#pragma once

#include "base/clock.h"

namespace platform {

class SerialTiming
{
public:
    static SerialTiming OfRead(const COMMTIMEOUTS& timeouts, DWORD size);
    static SerialTiming OfWrite(const COMMTIMEOUTS& timeouts, DWORD size);

    // Bytes were moved just now.
    void OnBytes();

    // When the operation is over if no more bytes come: by the clock, kNever for no time-out.
    TimePoint End() const;

private:
    TimePoint total_ = kNever;
    Duration interval_ = {};       // zero: none
    Duration silence_ = {};        // the part of the interval that must pass in real time
    TimePoint lastBytes_ = kNever; // by the clock
    TimePoint lastBytesReal_ = kNever;
};

} // namespace platform
