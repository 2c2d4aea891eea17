// Frames of the diagnostic port, byte by byte, as both sides must build and take them; docs/protocol.md names their
// fields, which stand in groups here. Used by the tests of the library's codec and of the simulated handset: what one
// side sends here is what the other expects. The bytes were written down independently of either codec; do not generate
// them from one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace wire {

using Bytes = std::vector<std::uint8_t>;

// The bytes of hexadecimal digits in pairs; blanks between them mean nothing.
inline Bytes Hex(const std::string& text)
{
    std::string digits;
    for (const char character : text)
        if (character != ' ')
            digits += character;
    Bytes bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(digits.substr(at, 2), nullptr, 16)));
    return bytes;
}

struct GoldenFrame
{
    const char* name;
    std::uint32_t sequence;
    Bytes payload; // the request record, or the payload of the reply
    Bytes frame;   // what travels
};

// Record: command, always 1, parameters. Frame: always so, sequence identifier, record, check value, flag.
inline const std::vector<GoldenFrame> kRequests = {
    // The first request of every port. Nothing in it needs stuffing.
    {"startup", 1, Hex("01000000 0100"), Hex("4B001300 01000000 01000000 0100 BA25 7E")},
    // Both special bytes in the record, each sent as two.
    {"writeParameters", 2, Hex("0D000000 0100 7E 7D 2C01"),
     Hex("4B001300 02000000 0D000000 0100 7D5E 7D5D 2C01 5B31 7E")},
    // A lock code travels as its four characters, without a terminator.
    {"setLock", 3, Hex("09000000 0100 01 30303030"), Hex("4B001300 03000000 09000000 0100 01 30303030 9856 7E")},
    // Special bytes in the sequence identifier.
    {"batteryInformation", 0x7D7E, Hex("05000000 0100"), Hex("4B001300 7D5E7D5D0000 05000000 0100 4A54 7E")},
    // A flag byte in the check value is stuffed as well.
    {"phoneVariance", 4, Hex("31000000 0100"), Hex("4B001300 04000000 31000000 0100 D17D5E 7E")},
};

inline const std::string kBell = "420065006C006C00" + std::string(2 * 64, '0'); // 36 units

// Payload: the command and the 1 as this handset repeats them, status, what the command brings. Frame: command code,
// not interpreted, length (payload and 7), sequence identifier, payload, check value, flag.
inline const std::vector<GoldenFrame> kReplies = {
    // A reply that is a header alone.
    {"startup", 1, Hex("01000000 0100 0000"), Hex("4B 00000000 0F000000 01000000 01000000 0100 0000 DDC7 7E")},
    // Status 10: the lock code was wrong.
    {"setLock", 3, Hex("09000000 0100 0A00"), Hex("4B 00000000 0F000000 03000000 09000000 0100 0A00 AA15 7E")},
    // Special bytes in the sequence identifier and in the record.
    {"batteryInformation", 0x7D7E, Hex("05000000 0100 0000 7E 50"),
     Hex("4B 00000000 11000000 7D5E7D5D0000 05000000 0100 0000 7D5E 50 79CC 7E")},
    // Network, battery and messages have changed.
    {"phoneVariance", 4, Hex("31000000 0100 0000 C100"),
     Hex("4B 00000000 11000000 04000000 31000000 0100 0000 C100 C179 7E")},
    // Result 0 and no record: the slot is empty.
    {"readContact", 6, Hex("23000000 0100 0000 00000000 00000000 00000000"),
     Hex("4B 00000000 1B000000 06000000 23000000 0100 0000 00000000 00000000 00000000 ED55 7E")},
    // Result 5: the list has no (further) entry.
    {"firstCall", 7, Hex("1A000000 0100 0000 05000000 00000000"),
     Hex("4B 00000000 17000000 07000000 1A000000 0100 0000 05000000 00000000 0B33 7E")},
    {"ringerName", 8, Hex("28000000 0100 0000 00000000" + kBell),
     Hex("4B 00000000 5B000000 08000000 28000000 0100 0000 00000000" + kBell + "E13E 7E")},
};

} // namespace wire
