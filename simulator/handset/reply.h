// Carrying out one request record and turning the answer into bytes for the line, faults included.
// Used by the session, for framed and for raw requests alike.
#pragma once

#include "simulator/handset/exchange.h"
#include "simulator/handset/fault.h"
#include "simulator/handset/step.h"
#include "simulator/phone/phone.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace simulator {

// The exchange without what only the session knows (sequence, faults), and the reply's payload.
struct Answered
{
    Exchange exchange{};
    Bytes payload{};
};

// A status or result that departs refuses the command, which is then not carried out.
Answered CarryOut(Phone& phone, std::span<const std::uint8_t> record, const Departure& departure);

// The bytes of the reply: framed when there is a sequence identifier to echo, bare otherwise.
Bytes ReplyBytes(Bytes payload, std::optional<std::uint32_t> sequence, const Departure& departure);

// What happens on the line: late, in pieces, not at all, or the line goes.
void AppendSteps(const Bytes& reply, const Departure& departure, std::vector<Step>& steps);

} // namespace simulator
