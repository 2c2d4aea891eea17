// A handset's serial port in memory. A program that links this defines the Win32 calls by which the library opens and
// uses a port, and they take the place of the stand-in's: the port object, its overlapped I/O and everything above run
// as they are, and nothing waits: what would take time sets the clock on. The library's log file is a place without a
// disk, whose lines are looked at, and its settings are members. One port is open at a time, on one thread.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <span>

#include <windows.h>

#include "fuzz/input.h"

namespace fuzz {

// How a read or write goes on.
enum class Outcome : std::uint8_t
{
    Now,         // it is over when the call returns
    Later,       // while it is waited for
    TimeOut,     // never; the bytes of a read are there when it is given up
    Failure,     // it fails at once, or
    LateFailure, // when its result is asked for
};

// What one read finds, or as much of it as the read has room for.
struct Piece
{
    Bytes bytes{};
    Outcome outcome = Outcome::Now;
};

struct MemoryPort
{
    // The process's one.
    static MemoryPort& Get();

    // Told of each write; fills `pieces` with what comes back, and says how the write ends.
    std::function<Outcome(std::span<const std::uint8_t>)> onWrite{};
    std::deque<Piece> pieces{};
    std::uint32_t writes = 0; // since the port was opened: the sequence identifier of the last request
    bool isPrompt = false;    // the setting "Prompt Reads"
    bool opens = true;
    bool isSlow = false;       // what is late comes when the wait for it all but ends
    bool tells = true;         // what it has received, and drops it when it is told to
    bool takesMessages = true; // the window's queue
    HWND window = nullptr;     // that is told of arrivals

    // The reply frame around a payload, for the last request. Its check value is 0: hosts do not verify it.
    Bytes Frame(std::span<const std::uint8_t> payload) const;
};

} // namespace fuzz
