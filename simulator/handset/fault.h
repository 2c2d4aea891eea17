// Faults of a simulated handset, in one vocabulary for options, control lines and tests.
// Used by the session, which applies every fault that matches a request, in the order in which they were added.
// A new kind of fault is one row of the table in fault.cpp; it says what departs, in words of Departure.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

// How the answer to one request departs from the right one: what the faults that strike it come to. The defaults are no
// departure; of two faults that set the same thing, the first one counts.
struct Departure
{
    enum class Line
    {
        Stays,
        HangsUp,
        IsUnplugged,
    };
    struct Patch
    {
        std::size_t offset;
        std::uint32_t value;
    };

    std::optional<std::uint16_t> status; // the command is refused
    std::optional<std::uint32_t> result; // likewise, where its reply has one
    bool isAtError = false;
    std::optional<std::size_t> payloadSize;
    std::vector<Patch> patches;
    std::optional<std::uint32_t> sequenceShift;
    std::optional<std::uint8_t> commandCode;
    std::optional<std::int64_t> length;
    bool wrongCheck = false;
    std::optional<std::size_t> sentBytes; // of the reply frame, from its beginning
    std::chrono::milliseconds delay{0};
    bool isSilent = false;
    Line line = Line::Stays;
    std::vector<std::size_t> pieceEnds;
    std::chrono::milliseconds pause{0}; // between the pieces
};

struct Fault;

// A row of the table.
struct FaultKind
{
    std::string_view name;
    std::size_t values;    // how many are wanted; kSomeValues: one or more, ascending, with a pause
    std::int64_t fallback; // taken when one is wanted and none is given; a negative one shows that such have a meaning
    std::string_view form; // how it is written
    std::string_view help;
    void (*depart)(const Fault& fault, Departure& departure);
};

constexpr std::size_t kSomeValues = 9;

constexpr std::uint32_t kAnyCommand = 0;
constexpr std::uint32_t kAtCommands = 0xFFFFFFFF;

struct Fault
{
    const FaultKind* kind = nullptr;
    std::vector<std::int64_t> values{};
    std::chrono::milliseconds pause{50};
    std::uint32_t command = kAnyCommand;    // every framed or raw request, one command number, or kAtCommands
    std::optional<std::uint32_t> remaining; // how often it still strikes; none: always
    unsigned percent = 100;

    std::int64_t Value() const { return values.front(); }
};

// KIND[=VALUES][@COMMAND][*TIMES][%PERCENT], for example "status=10@9*1", "split=3,9/200@6", "silence%20", "error@at".
// Throws std::invalid_argument with a sentence that says what is allowed.
Fault ParseFault(std::string_view text);

// Throws std::invalid_argument, as ParseFault does.
const FaultKind& FindFaultKind(std::string_view name);
std::span<const FaultKind> AllFaultKinds();

Departure DepartureOf(const std::vector<Fault>& faults);

std::string ToString(const Fault& fault);

// One line per kind, for help texts.
std::string FaultHelp();

} // namespace simulator
