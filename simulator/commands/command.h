// What the handset answers: one row per command, grouped by service. Used by the session, which checks a request
// against its row, carries it out and builds the reply: header, result where the row has one, then what the handler
// wrote. A new command is one row and one handler in the file of its service.
#pragma once

#include "simulator/commands/fields.h"
#include "simulator/phone/phone.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace simulator {

constexpr std::size_t kRequestHeaderSize = 6; // command number, then the 16-bit value 1
constexpr std::size_t kReplyHeaderSize = 8;
constexpr std::size_t kLongestRequest = 8181;    // what one request frame can carry
constexpr std::size_t kLargestPayload = 1 << 20; // what a fault may blow a reply up to

// Values of the reply header's status. 1 to 3 are this handset's own; a host takes them for a plain failure.
enum Status : std::uint16_t
{
    kDone = 0,
    kUnknownCommand = 1,
    kMalformedRequest = 2,
    kNoSuchList = 3,
    kNotAutomatic = 5,
    kWrongLockCode = 10,
};

enum Result : std::uint32_t
{
    kSuccess = 0,
    kAbsent = 1,
    kDoesNotFit = 2,
    kNoService = 3,
    kStoreFull = 4,
    kEndOfList = 5,
    kBadIndex = 8,
    kNoAddress = 101,
};

struct Outcome
{
    Outcome() = default;
    Outcome(Status refusal) : status(refusal) {}
    Outcome(Result refusal) : result(refusal) {}

    std::uint16_t status = kDone;
    std::uint32_t result = kSuccess;

    bool IsRefused() const { return status != kDone || result != kSuccess; }
};

struct Command
{
    std::uint32_t number;
    const char* name;
    std::size_t requestSize; // header included, without a variable tail
    std::size_t replySize;   // payload of a refusal: the reply record's fixed part, header included
    bool hasResult;
    // Reads what follows the request header, writes what follows the reply's header and result.
    Outcome (*handle)(Phone& phone, FieldReader& request, FieldWriter& reply);
    // A request with a tail holds the number of its items at this offset (0: no tail).
    std::size_t countOffset = 0;
    std::size_t itemSize = 0;
};

const Command* FindCommand(std::uint32_t number);

// All rows, in the order of their numbers.
std::vector<Command> AllCommands();

// The size the whole request must have; none while too few bytes are there to tell.
std::optional<std::uint64_t> ExpectedSize(const Command& command, std::span<const std::uint8_t> request);

// Why a request record of a known command is turned away; empty when it is well formed.
std::string WhyMalformed(const Command& command, std::span<const std::uint8_t> request);

// The rows of each service.
std::span<const Command> StatusCommands();
std::span<const Command> SetupCommands();
std::span<const Command> ContactCommands();
std::span<const Command> EventCommands();
std::span<const Command> MessageCommands();
std::span<const Command> CallCommands();

} // namespace simulator
