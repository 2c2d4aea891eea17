// Faults of a simulated handset, in one vocabulary for options, control lines and tests.
// Used by the session, which applies every fault that matches a request, in the order in which they were added.
// A new kind of fault is one row of the table in fault.cpp.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

enum class FaultKind
{
    Delay,    // delay=MS         the reply comes MS milliseconds late
    Silence,  // silence          the command is carried out, its reply is never sent
    Split,    // split=N,M/MS     the reply is sent in pieces that end before bytes N and M, MS (default 50) apart
    Sequence, // sequence=N       N (default -1) is added to the reply's sequence identifier
    Command,  // command=N        byte 0 of the reply frame is N (default 0x4C)
    Length,   // length=N         the reply frame's length field is N
    Check,    // check            the reply frame's check value is wrong
    Truncate, // truncate=N       only the first N bytes of the reply are sent
    Payload,  // payload=N        the reply's payload is cut, or filled with zeros, to N bytes (oversized: payload=9000)
    Patch,    // patch=OFFSET,N   the 32-bit value at OFFSET of the payload is N
    Status,   // status=N         the command is refused with this status
    Result,   // result=N         the command is refused with this result
    Error,    // error            an AT command is answered with ERROR
    HangUp,   // hangup           the line drops instead of a reply; it can be opened again at once
    Unplug,   // unplug           the handset goes instead of a reply, until it is plugged in again
};

constexpr std::uint32_t kAnyCommand = 0;
constexpr std::uint32_t kAtCommands = 0xFFFFFFFF;

struct Fault
{
    FaultKind kind = FaultKind::Silence;
    std::vector<std::int64_t> values;
    std::chrono::milliseconds pause{50};
    std::uint32_t command = kAnyCommand;    // every framed or raw request, one command number, or kAtCommands
    std::optional<std::uint32_t> remaining; // how often it still strikes; none: always
    unsigned percent = 100;

    std::int64_t Value() const { return values.front(); }
};

// KIND[=VALUES][@COMMAND][*TIMES][%PERCENT], for example "status=10@9*1", "split=3,9/200@6", "silence%20", "error@at".
// Throws std::invalid_argument with a sentence that says what is allowed.
Fault ParseFault(std::string_view text);

std::string ToString(const Fault& fault);

// One line per kind, for help texts.
std::string FaultHelp();

} // namespace simulator
