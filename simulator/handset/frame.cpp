#include "simulator/handset/frame.h"

#include "simulator/commands/fields.h"

#include <algorithm>
#include <array>

namespace simulator {
namespace {

constexpr std::array<std::uint8_t, 4> kRequestHeader{kCommandCode, 0x00, 0x13, 0x00};

// An escape that is escaped is no last one.
bool EndsInEscape(std::span<const std::uint8_t> stuffed)
{
    bool isEscaped = false;
    for (const std::uint8_t byte : stuffed)
        isEscaped = !isEscaped && byte == kEscape;
    return isEscaped;
}

} // namespace

std::uint16_t CheckValue(std::span<const std::uint8_t> bytes)
{
    unsigned value = 0xFFFF;
    for (const unsigned byte : bytes) {
        value ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1) != 0 ? value >> 1 ^ 0x8408 : value >> 1;
    }
    return static_cast<std::uint16_t>(value ^ 0xFFFF);
}

Bytes Stuff(std::span<const std::uint8_t> frame)
{
    Bytes stuffed;
    stuffed.reserve(frame.size() + frame.size() / 16 + 1);
    for (const std::uint8_t byte : frame) {
        const bool isSpecial = byte == kFlag || byte == kEscape;
        if (isSpecial)
            stuffed.push_back(kEscape);
        stuffed.push_back(isSpecial ? static_cast<std::uint8_t>(byte ^ 0x20) : byte);
    }
    stuffed.push_back(kFlag);
    return stuffed;
}

Bytes Unstuff(std::span<const std::uint8_t> stuffed)
{
    Bytes frame;
    frame.reserve(stuffed.size());
    for (std::size_t i = 0; i < stuffed.size(); ++i) {
        if (stuffed[i] != kEscape)
            frame.push_back(stuffed[i]);
        else if (++i < stuffed.size())
            frame.push_back(static_cast<std::uint8_t>(stuffed[i] ^ 0x20));
    }
    return frame;
}

RequestFrame ParseRequest(std::span<const std::uint8_t> stuffed)
{
    if (EndsInEscape(stuffed))
        return {.reason = "an escape right before the flag"};
    const Bytes frame = Unstuff(stuffed);
    if (frame.size() < kRequestRecordOffset + kCheckSize)
        return {.reason = "a frame of " + std::to_string(frame.size()) + " bytes"};
    const std::span<const std::uint8_t> bytes = frame;
    const auto checked = bytes.first(bytes.size() - kCheckSize);
    FieldReader check(bytes.last(kCheckSize));
    if (check.U16("check") != CheckValue(checked))
        return {.reason = "a wrong check value"};
    if (!std::equal(kRequestHeader.begin(), kRequestHeader.end(), bytes.begin()))
        return {.reason = "a wrong frame header"};
    FieldReader sequence(bytes.subspan(kRequestSequenceOffset));
    const auto record = checked.subspan(kRequestRecordOffset);
    return {.reason = {}, .sequence = sequence.U32("sequence"), .record = Bytes(record.begin(), record.end())};
}

Bytes BuildReply(const ReplyFrame& reply)
{
    constexpr std::size_t kBytesBehindLength = 4 + kCheckSize + 1; // sequence identifier, check value, flag
    FieldWriter frame;
    frame.U8("command", reply.commandCode);
    frame.Zeros(4);
    const auto length = static_cast<std::uint32_t>(reply.payload.size() + kBytesBehindLength);
    frame.U32("length", reply.length < 0 ? length : static_cast<std::uint32_t>(reply.length));
    frame.U32("sequence", reply.sequence);
    frame.Append(reply.payload);
    const std::uint16_t check = CheckValue(frame.Written());
    frame.U16("check", reply.wrongCheck ? static_cast<std::uint16_t>(check ^ 0xFFFF) : check);
    return Stuff(frame.Written());
}

} // namespace simulator
