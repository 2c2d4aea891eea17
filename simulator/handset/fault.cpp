#include "simulator/handset/fault.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <stdexcept>
#include <system_error>

namespace simulator {

namespace {

constexpr std::int64_t kNoFallback = INT64_MIN;

template <typename T>
void SetOnce(std::optional<T>& member, std::int64_t value)
{
    if (!member)
        member = static_cast<T>(value);
}

constexpr std::array kKinds{
    FaultKind{"delay", 1, kNoFallback, "delay=MS", "the reply comes MS milliseconds late",
              [](const Fault& fault, Departure& d) { d.delay += std::chrono::milliseconds(fault.Value()); }},
    FaultKind{"silence", 0, 0, "silence", "the command is carried out, its reply is never sent",
              [](const Fault&, Departure& d) { d.isSilent = true; }},
    FaultKind{"split", kSomeValues, kNoFallback, "split=N,M/MS",
              "the reply is sent in pieces that end before bytes N and M, MS (default 50) milliseconds apart",
              [](const Fault& fault, Departure& d) {
                  if (d.pieceEnds.empty()) {
                      d.pieceEnds.assign(fault.values.begin(), fault.values.end());
                      d.pause = fault.pause;
                  }
              }},
    FaultKind{"sequence", 1, -1, "sequence[=N]", "N (default -1) is added to the reply's sequence identifier",
              [](const Fault& fault, Departure& d) { SetOnce(d.sequenceShift, fault.Value()); }},
    FaultKind{"command", 1, 0x4C, "command[=N]", "byte 0 of the reply frame is N (default 0x4C)",
              [](const Fault& fault, Departure& d) { SetOnce(d.commandCode, fault.Value()); }},
    FaultKind{"length", 1, kNoFallback, "length=N", "the reply frame's length field is N",
              [](const Fault& fault, Departure& d) { SetOnce(d.length, fault.Value()); }},
    FaultKind{"check", 0, 0, "check", "the reply frame's check value is wrong",
              [](const Fault&, Departure& d) { d.wrongCheck = true; }},
    FaultKind{"truncate", 1, kNoFallback, "truncate=N", "only the first N bytes of the reply are sent",
              [](const Fault& fault, Departure& d) { SetOnce(d.sentBytes, fault.Value()); }},
    FaultKind{"payload", 1, kNoFallback, "payload=N",
              "the reply's payload is cut, or filled with zeros, to N bytes (oversized: payload=9000)",
              [](const Fault& fault, Departure& d) { SetOnce(d.payloadSize, fault.Value()); }},
    FaultKind{"patch", 2, kNoFallback, "patch=OFFSET,N", "the 32-bit value at OFFSET of the reply's payload is N",
              [](const Fault& fault, Departure& d) {
                  d.patches.push_back(
                      {static_cast<std::size_t>(fault.values[0]), static_cast<std::uint32_t>(fault.values[1])});
              }},
    FaultKind{"status", 1, kNoFallback, "status=N", "the command is refused with this status",
              [](const Fault& fault, Departure& d) { SetOnce(d.status, fault.Value()); }},
    FaultKind{"result", 1, kNoFallback, "result=N", "the command is refused with this result, where its reply has one",
              [](const Fault& fault, Departure& d) { SetOnce(d.result, fault.Value()); }},
    FaultKind{"error", 0, 0, "error", "an AT command is answered with ERROR",
              [](const Fault&, Departure& d) { d.isAtError = true; }},
    FaultKind{"hangup", 0, 0, "hangup", "the line drops instead of a reply; it can be opened again at once",
              [](const Fault&, Departure& d) { d.line = std::max(d.line, Departure::Line::HangsUp); }},
    FaultKind{"unplug", 0, 0, "unplug", "the handset goes instead of a reply, until it is plugged in again",
              [](const Fault&, Departure& d) { d.line = Departure::Line::IsUnplugged; }},
};

[[noreturn]] void Fail(std::string_view text, const std::string& wrong)
{
    throw std::invalid_argument("fault \"" + std::string(text) + "\": " + wrong);
}

std::int64_t ParseNumber(std::string_view whole, std::string_view text, std::int64_t least, std::int64_t most)
{
    std::int64_t value = 0;
    const bool isHex = text.starts_with("0x");
    const std::string_view digits = isHex ? text.substr(2) : text;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, isHex ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size() || value < least || value > most)
        Fail(whole, "\"" + std::string(text) + "\" is no number from " + std::to_string(least) + " to " +
                        std::to_string(most));
    return value;
}

// Cuts off what stands behind the last `mark`; empty when there is none.
std::string_view TakeSuffix(std::string_view& text, char mark)
{
    const std::size_t at = text.rfind(mark);
    if (at == std::string_view::npos)
        return {};
    const std::string_view suffix = text.substr(at + 1);
    text = text.substr(0, at);
    return suffix;
}

void ParseValues(std::string_view whole, std::string_view text, const FaultKind& kind, Fault& fault)
{
    if (const std::string_view pause = TakeSuffix(text, '/'); !pause.empty())
        fault.pause = std::chrono::milliseconds(ParseNumber(whole, pause, 0, 600'000));
    while (!text.empty()) {
        const std::size_t comma = std::min(text.find(','), text.size());
        fault.values.push_back(ParseNumber(whole, text.substr(0, comma), INT32_MIN, UINT32_MAX));
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    if (fault.values.empty() && kind.values == 1 && kind.fallback != kNoFallback)
        fault.values.push_back(kind.fallback);
    const bool isRight = kind.values == kSomeValues ? !fault.values.empty() : fault.values.size() == kind.values;
    if (!isRight)
        Fail(whole, "it is written " + std::string(kind.form));
    const bool maySubtract = kind.fallback < 0 && kind.fallback != kNoFallback;
    if (!maySubtract &&
        std::any_of(fault.values.begin(), fault.values.end(), [](std::int64_t value) { return value < 0; }))
        Fail(whole, "a negative number has no meaning here");
    if (kind.values == kSomeValues && !std::is_sorted(fault.values.begin(), fault.values.end()))
        Fail(whole, "the places to split at must ascend");
}

std::string Kinds()
{
    std::string names;
    for (const FaultKind& kind : kKinds)
        names.append(names.empty() ? " " : ", ").append(kind.name);
    return names;
}

const FaultKind& FindKind(std::string_view whole, std::string_view name)
{
    const auto* const kind =
        std::find_if(kKinds.begin(), kKinds.end(), [&](const FaultKind& one) { return one.name == name; });
    if (kind == kKinds.end())
        Fail(whole, "no such kind; the kinds are" + Kinds() + " (phnsim --help describes them)");
    return *kind;
}

} // namespace

const FaultKind& FindFaultKind(std::string_view name)
{
    return FindKind(name, name);
}

std::span<const FaultKind> AllFaultKinds()
{
    return kKinds;
}

Fault ParseFault(std::string_view text)
{
    constexpr std::int64_t kMost = INT32_MAX;
    std::string_view rest = text;
    Fault fault;
    if (const std::string_view percent = TakeSuffix(rest, '%'); !percent.empty())
        fault.percent = static_cast<unsigned>(ParseNumber(text, percent, 0, 100));
    if (const std::string_view times = TakeSuffix(rest, '*'); !times.empty())
        fault.remaining = static_cast<std::uint32_t>(ParseNumber(text, times, 1, kMost));
    if (const std::string_view command = TakeSuffix(rest, '@'); command == "at")
        fault.command = kAtCommands;
    else if (!command.empty())
        fault.command = static_cast<std::uint32_t>(ParseNumber(text, command, 1, kMost));
    const std::size_t equals = std::min(rest.find('='), rest.size());
    fault.kind = &FindKind(text, rest.substr(0, equals));
    ParseValues(text, rest.substr(std::min(equals + 1, rest.size())), *fault.kind, fault);
    return fault;
}

Departure DepartureOf(const std::vector<Fault>& faults)
{
    Departure departure;
    for (const Fault& fault : faults)
        fault.kind->depart(fault, departure);
    return departure;
}

std::string ToString(const Fault& fault)
{
    std::string text(fault.kind->name);
    char separator = '=';
    for (const std::int64_t value : fault.values) {
        text += separator + std::to_string(value);
        separator = ',';
    }
    if (fault.kind->values == kSomeValues)
        text += "/" + std::to_string(fault.pause.count());
    if (fault.command != kAnyCommand)
        text += fault.command == kAtCommands ? "@at" : "@" + std::to_string(fault.command);
    if (fault.remaining)
        text += "*" + std::to_string(*fault.remaining);
    if (fault.percent != 100)
        text += "%" + std::to_string(fault.percent);
    return text;
}

std::string FaultHelp()
{
    constexpr auto kLength = [](const FaultKind& kind) { return kind.form.size(); };
    constexpr std::size_t kColumn = kLength(std::ranges::max(kKinds, {}, kLength)) + 2;
    std::string help;
    for (const FaultKind& kind : kKinds)
        help.append(kind.form).append(kColumn - kind.form.size(), ' ').append(kind.help).append("\n");
    return help +
           "each with @COMMAND (a number, or \"at\" for AT commands), *TIMES and %PERCENT behind it, all optional";
}

} // namespace simulator
