// The frames of the diagnostic port as the handset sees them: requests in, replies out (docs/protocol.md).
// Written bit by bit and on its own, so that it can contradict the library's codec when one of the two is wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace simulator {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kFlag = 0x7E;
constexpr std::uint8_t kEscape = 0x7D;
constexpr std::uint8_t kCommandCode = 0x4B;
constexpr std::size_t kLongestRequestFrame = 8193; // stuffed

// Where the parts of an unstuffed frame lie.
constexpr std::size_t kRequestSequenceOffset = 4;
constexpr std::size_t kRequestRecordOffset = 8;
constexpr std::size_t kReplySequenceOffset = 9;
constexpr std::size_t kReplyPayloadOffset = 13;
constexpr std::size_t kCheckSize = 2;

// CRC-16/X.25, without a table.
std::uint16_t CheckValue(std::span<const std::uint8_t> bytes);

// Escapes every flag and escape byte, then closes with the flag.
Bytes Stuff(std::span<const std::uint8_t> frame);

// What Stuff has made, without the closing flag. A last escape, with nothing behind it, is dropped.
Bytes Unstuff(std::span<const std::uint8_t> stuffed);

struct RequestFrame
{
    std::string reason; // why the frame is turned away; empty when it is good
    std::uint32_t sequence = 0;
    Bytes record{};
};

// `stuffed`: everything up to the closing flag, without it.
RequestFrame ParseRequest(std::span<const std::uint8_t> stuffed);

// What a reply carries besides its payload. The defaults make a correct frame.
struct ReplyFrame
{
    std::uint32_t sequence = 0;
    Bytes payload;
    std::uint8_t commandCode = kCommandCode;
    std::int64_t length = -1; // -1: the true one
    bool wrongCheck = false;
};

Bytes BuildReply(const ReplyFrame& reply);

} // namespace simulator
