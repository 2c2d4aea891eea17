#include "simulator/recording/pcapng.h"

#include "simulator/commands/fields.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

namespace simulator {
namespace {

constexpr std::uint16_t kUser0 = 147;
constexpr std::uint16_t kUser1 = 148;
constexpr std::size_t kLongestCaptured = 262144; // Wireshark takes no more
constexpr std::uint32_t kInbound = 1;
constexpr std::uint32_t kOutbound = 2;

void Pad(FieldWriter& block)
{
    block.Zeros((4 - block.Written().size() % 4) % 4);
}

void AddOption(FieldWriter& block, std::uint16_t code, std::span<const std::uint8_t> value)
{
    block.U16("option", code);
    block.U16("length", static_cast<std::uint16_t>(value.size()));
    block.Append(value);
    Pad(block);
}

void EndOptions(FieldWriter& block)
{
    AddOption(block, 0, {});
}

// The body between its type and its length, which stands before and behind it.
void WriteBlock(std::ostream& stream, std::uint32_t type, const FieldWriter& body)
{
    const auto length = static_cast<std::uint32_t>(12 + body.Written().size());
    FieldWriter block;
    block.U32("type", type);
    block.U32("length", length);
    block.Append(body.Written());
    block.U32("length", length);
    stream.write(reinterpret_cast<const char*>(block.Written().data()),
                 static_cast<std::streamsize>(block.Written().size()));
    stream.flush();
}

FieldWriter Section()
{
    FieldWriter body;
    body.U32("byteOrder", 0x1A2B3C4D);
    body.U16("major", 1);
    body.U16("minor", 0);
    body.I32("size", -1); // 64 bits: unknown
    body.I32("size", -1);
    return body;
}

FieldWriter Interface(PortKind kind)
{
    const bool isModem = kind == PortKind::Modem;
    const std::string_view name = isModem ? "modem port" : "diagnostic port";
    constexpr std::array<std::uint8_t, 1> kNanoseconds{9};
    FieldWriter body;
    body.U16("linkType", isModem ? kUser1 : kUser0);
    body.U16("reserved", 0);
    body.U32("longestCaptured", kLongestCaptured);
    AddOption(body, 2, Bytes(name.begin(), name.end()));
    AddOption(body, 9, kNanoseconds);
    EndOptions(body);
    return body;
}

FieldWriter Captured(const Packet& packet)
{
    const auto bytes = std::span(packet.bytes).first(std::min(packet.bytes.size(), kLongestCaptured));
    const auto time = static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(packet.time.time_since_epoch()).count());
    FieldWriter flags;
    flags.U32("flags", packet.sender == Sender::Host ? kOutbound : kInbound);
    FieldWriter body;
    body.U32("interface", 0);
    body.U32("timeHigh", static_cast<std::uint32_t>(time >> 32));
    body.U32("timeLow", static_cast<std::uint32_t>(time));
    body.U32("captured", static_cast<std::uint32_t>(bytes.size()));
    body.U32("original", static_cast<std::uint32_t>(packet.bytes.size()));
    body.Append(bytes);
    Pad(body);
    AddOption(body, 2, flags.Written());
    EndOptions(body);
    return body;
}

} // namespace

PcapngWriter::PcapngWriter(const std::filesystem::path& file, PortKind kind)
    : file_(file), stream_(file, std::ios::binary)
{
    WriteBlock(stream_, 0x0A0D0D0A, Section());
    WriteBlock(stream_, 1, Interface(kind));
    Check();
}

void PcapngWriter::Write(const Packet& packet)
{
    if (!packet.bytes.empty())
        WriteBlock(stream_, 6, Captured(packet));
}

void PcapngWriter::Check() const
{
    if (!stream_)
        throw std::runtime_error(file_.string() + " cannot be written");
}

} // namespace simulator
